#pragma once

#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

typedef enum : NSInteger {
    UIViewContentModeScaleToFill,
    UIViewContentModeScaleAspectFit,
    UIViewContentModeScaleAspectFill,
    UIViewContentModeRedraw,
    UIViewContentModeCenter
} UIViewContentMode;
typedef enum : NSUInteger { UIControlStateNormal = 0 } UIControlState;
typedef enum : NSInteger { UIButtonTypeCustom = 0 } UIButtonType;
typedef struct CGImage *CGImageRef;

@interface UIImage : NSObject
+ (UIImage *)imageNamed:(NSString *)name;
+ (UIImage *)imageWithContentsOfFile:(NSString *)path;
- (CGImageRef)CGImage __attribute__((objc_returns_inner_pointer, cf_returns_not_retained));
@end

@interface UIView : NSObject
- (instancetype)initWithFrame:(CGRect)frame;
- (instancetype)initWithCoder:(NSCoder *)coder;
@property (readonly, strong) CALayer *layer;
@property CGRect bounds;
@property CGRect frame;
@property CGPoint center;
@property CGFloat alpha;
@property CGAffineTransform transform;
@property UIViewContentMode contentMode;
- (void)addSubview:(UIView *)view;
- (void)layoutSubviews;
@end
@interface UIImageView : UIView
@property (strong) UIImage *image;
@end
@interface UIButton : UIView
+ (instancetype)buttonWithType:(UIButtonType)type;
- (void)setImage:(UIImage *)image forState:(UIControlState)state;
@end
