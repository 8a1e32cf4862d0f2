#pragma once

#import <Foundation/Foundation.h>

typedef struct { CGFloat m[4][4]; } CATransform3D;
CATransform3D CATransform3DMakeScale(CGFloat x, CGFloat y, CGFloat z);
CATransform3D CATransform3DMakeRotation(CGFloat angle, CGFloat x, CGFloat y, CGFloat z);
CATransform3D CATransform3DScale(CATransform3D transform, CGFloat x, CGFloat y, CGFloat z);

extern NSString *const kCAFillModeBoth;
extern NSString *const kCAFillModeForwards;
extern NSString *const kCAFillModeBackwards;
extern NSString *const kCAFillModeRemoved;
extern NSString *const kCAMediaTimingFunctionLinear;
extern NSString *const kCAMediaTimingFunctionEaseIn;
extern NSString *const kCAMediaTimingFunctionEaseOut;
extern NSString *const kCAMediaTimingFunctionEaseInEaseOut;
extern NSString *const kCATransactionDisableActions;

@interface CAMediaTimingFunction : NSObject
+ (instancetype)functionWithName:(NSString *)name;
+ (instancetype)functionWithControlPoints:(float)x1 :(float)y1 :(float)x2 :(float)y2;
@end

@interface CAAnimation : NSObject
@property (strong) id delegate;
@property (getter=isRemovedOnCompletion) BOOL removedOnCompletion;
@property CFTimeInterval beginTime;
@property CFTimeInterval duration;
@property float repeatCount;
@property BOOL autoreverses;
@property float speed;
@property CFTimeInterval timeOffset;
@property (copy) NSString *fillMode;
@property (strong) CAMediaTimingFunction *timingFunction;
@end
@interface CAPropertyAnimation : CAAnimation
+ (instancetype)animationWithKeyPath:(NSString *)path;
@property (copy) NSString *keyPath;
@property (getter=isAdditive) BOOL additive;
@end
@interface CABasicAnimation : CAPropertyAnimation
@property (strong) id fromValue;
@property (strong) id toValue;
@property (strong) id byValue;
@end
@interface CAKeyframeAnimation : CAPropertyAnimation
@property (copy) NSArray *values;
@property (copy) NSArray *keyTimes;
@property (copy) NSArray *timingFunctions;
@end
@interface CAAnimationGroup : CAAnimation
@property (copy) NSArray *animations;
@end

@interface CALayer : NSObject
+ (instancetype)layer;
@property (copy) NSString *name;
@property CGRect bounds;
@property CGRect frame;
@property CGPoint position;
@property CGFloat zPosition;
@property CGPoint anchorPoint;
@property CATransform3D transform;
@property float opacity;
@property BOOL masksToBounds;
@property (strong) id contents;
- (void)addSublayer:(CALayer *)layer;
- (void)addAnimation:(CAAnimation *)animation forKey:(NSString *)key;
- (CAAnimation *)animationForKey:(NSString *)key;
- (void)removeAnimationForKey:(NSString *)key;
- (void)removeAllAnimations;
@end

@interface CATransaction : NSObject
+ (void)begin;
+ (void)commit;
+ (void)setValue:(id)value forKey:(NSString *)key;
@end
