#pragma once

typedef signed char BOOL;
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#ifndef NULL
#define NULL ((void *)0)
#endif
#define nil ((id)0)
#define MIN(a, b) ((a) < (b) ? (a) : (b))
#define MAX(a, b) ((a) > (b) ? (a) : (b))
#ifndef HUGE_VALF
#define HUGE_VALF __builtin_huge_valf()
#endif
#define IB_DESIGNABLE

typedef unsigned long NSUInteger;
typedef long NSInteger;
typedef double CGFloat;
typedef double CFTimeInterval;
typedef const struct __CFBoolean *CFBooleanRef;
extern const CFBooleanRef kCFBooleanTrue;

typedef struct { CGFloat x, y; } CGPoint;
typedef struct { CGFloat width, height; } CGSize;
typedef struct { CGPoint origin; CGSize size; } CGRect;
typedef struct { CGFloat a, b, c, d, tx, ty; } CGAffineTransform;
CGPoint CGPointMake(CGFloat x, CGFloat y);
CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height);
CGFloat CGRectGetMidX(CGRect rect);
CGFloat CGRectGetMidY(CGRect rect);
CGAffineTransform CGAffineTransformMakeScale(CGFloat x, CGFloat y);
CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle);
CGAffineTransform CGAffineTransformScale(CGAffineTransform transform, CGFloat x, CGFloat y);

typedef struct { unsigned long state; id __unsafe_unretained *itemsPtr;
                 unsigned long *mutationsPtr; unsigned long extra[5]; } NSFastEnumerationState;

// No protocols are declared: the runtime on which exports are played takes those of another layout.
__attribute__((objc_root_class)) @interface NSObject {
    Class isa;
}
+ (instancetype)new;
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (Class)class;
@end

@interface NSString : NSObject
- (NSString *)stringByAppendingString:(NSString *)text;
@end
@interface NSConstantString : NSString {
    const char *text;
    unsigned int length;
}
@end
@interface NSNumber : NSObject
+ (NSNumber *)numberWithDouble:(double)value;
+ (NSNumber *)numberWithFloat:(float)value;
+ (NSNumber *)numberWithInt:(int)value;
- (float)floatValue;
- (double)doubleValue;
@end
@interface NSArray : NSObject
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count;
- (id)objectAtIndexedSubscript:(NSUInteger)index;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained [])buffer
                                    count:(NSUInteger)length;
@property (readonly) NSUInteger count;
@property (readonly) id lastObject;
@end
@interface NSMutableArray : NSArray
- (void)addObject:(id)object;
@end
@interface NSDictionary : NSObject
+ (instancetype)dictionary;
- (id)objectForKeyedSubscript:(id)key;
@property (readonly, copy) NSArray *allValues;
@end
@interface NSMutableDictionary : NSDictionary
- (void)setObject:(id)object forKeyedSubscript:(id)key;
@end

typedef NSUInteger NSPointerFunctionsOptions;
enum { NSPointerFunctionsStrongMemory = 0, NSPointerFunctionsOpaqueMemory = 2 };
@interface NSMapTable : NSObject
+ (NSMapTable *)mapTableWithKeyOptions:(NSPointerFunctionsOptions)keys
                          valueOptions:(NSPointerFunctionsOptions)values;
- (id)objectForKey:(id)key;
- (void)removeObjectForKey:(id)key;
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSCoder : NSObject
@end
@interface NSNotification : NSObject
@end
@interface NSNotificationCenter : NSObject
+ (NSNotificationCenter *)defaultCenter;
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSString *)name object:(id)object;
@end
@interface NSBundle : NSObject
+ (NSBundle *)bundleForClass:(Class)aClass;
- (NSString *)pathForResource:(NSString *)name ofType:(NSString *)extension;
@end
