#pragma once

#import <AppKit/AppKit.h>

@interface UIImage : NSObject
+ (UIImage *)imageNamed:(NSString *)name;
@end
@interface UIView : NSView
@property CGFloat alpha;
@property CGPoint center;
@property CGAffineTransform transform;
@end
@interface UIImageView : UIView
@property (strong) UIImage *image;
@end
