#pragma once

#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

extern NSString *const NSViewFrameDidChangeNotification;

@interface NSBundle (NSImageResources)
- (NSString *)pathForImageResource:(NSString *)name;
@end

@interface NSImage : NSObject
+ (NSImage *)imageNamed:(NSString *)name;
- (instancetype)initWithContentsOfFile:(NSString *)path;
@end

@interface NSView : NSObject
- (instancetype)initWithFrame:(CGRect)frame;
- (instancetype)initWithCoder:(NSCoder *)coder;
@property CGRect bounds;
@property CGRect frame;
- (void)addSubview:(NSView *)view;
@property BOOL wantsLayer;
@property (strong) CALayer *layer;
@property (readonly, getter=isFlipped) BOOL flipped;
@end
