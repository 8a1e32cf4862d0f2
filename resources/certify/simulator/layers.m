// Layers, their animations and their time.

NSString *const kCAFillModeBoth = @"both";
NSString *const kCAFillModeForwards = @"forwards";
NSString *const kCAFillModeBackwards = @"backwards";
NSString *const kCAFillModeRemoved = @"removed";
NSString *const kCAMediaTimingFunctionLinear = @"linear";
NSString *const kCAMediaTimingFunctionEaseIn = @"easeIn";
NSString *const kCAMediaTimingFunctionEaseOut = @"easeOut";
NSString *const kCAMediaTimingFunctionEaseInEaseOut = @"easeInEaseOut";
NSString *const kCATransactionDisableActions = @"disableActions";
static const struct __CFBoolean { char isTrue; } booleanTrue = {1};
const CFBooleanRef kCFBooleanTrue = &booleanTrue;
// A begin time of 0 means now; this one means the beginning.
const CFTimeInterval AVCoreAnimationBeginTimeAtZero = 1e-100;

// Seconds since the beginning, the same for all layers.
static CFTimeInterval mediaTime = 0;

@implementation CAMediaTimingFunction {
    @public
    double _x1, _y1, _x2, _y2;
}
+ (instancetype)functionWithControlPoints:(float)x1 :(float)y1 :(float)x2 :(float)y2 {
    CAMediaTimingFunction *function = [self alloc];
    function->_x1 = x1, function->_y1 = y1, function->_x2 = x2, function->_y2 = y2;
    return function;
}
+ (instancetype)functionWithName:(NSString *)name {
    if (isEqual(name, kCAMediaTimingFunctionLinear)) {
        return [self functionWithControlPoints:0 :0 :1 :1];
    }
    if (isEqual(name, kCAMediaTimingFunctionEaseIn)) {
        return [self functionWithControlPoints:0.42F :0 :1 :1];
    }
    if (isEqual(name, kCAMediaTimingFunctionEaseOut)) {
        return [self functionWithControlPoints:0 :0 :0.58F :1];
    }
    if (isEqual(name, kCAMediaTimingFunctionEaseInEaseOut)) {
        return [self functionWithControlPoints:0.42F :0 :0.58F :1];
    }
    stop("there is no timing function called %s", utf8(name));
    return nil;
}
@end

static double bezier(double p1, double p2, double s) {
    return ((1 - 3 * p2 + 3 * p1) * s + 3 * p2 - 6 * p1) * s * s + 3 * p1 * s;
}
// The height of the curve over x; x never falls along it.
static double heightOfTiming(CAMediaTimingFunction *function, double x) {
    if (!function || x <= 0 || x >= 1) { return x; }
    double low = 0, high = 1;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        if (bezier(function->_x1, function->_x2, middle) < x) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return bezier(function->_y1, function->_y2, (low + high) / 2);
}

@interface NSObject (AnimationDelegate)
- (void)animationDidStop:(CAAnimation *)animation finished:(BOOL)finished;
- (BOOL)isKindOfNumber;
@end

// What an animation says at a time: a number or an image.
typedef struct { double number; id object; } Sample;

@interface CAAnimation (Playing)
- (Sample)sampleAtProgress:(double)progress from:(double)own;
- (void)requireSound;
@end

@implementation CAAnimation
- (instancetype)init {
    self.removedOnCompletion = YES;
    self.speed = 1;
    self.fillMode = kCAFillModeRemoved;
    return self;
}
- (Sample)sampleAtProgress:(double)progress from:(double)own {
    (void)progress;
    return (Sample){own, nil};
}
- (void)requireSound {
}
- (id)copyWithZone:(void *)zone {
    (void)zone;
    CAAnimation *copy = [[self class] new];
    copy.delegate = self.delegate;
    copy.removedOnCompletion = self.removedOnCompletion;
    copy.beginTime = self.beginTime;
    copy.duration = self.duration;
    copy.repeatCount = self.repeatCount;
    copy.autoreverses = self.autoreverses;
    copy.speed = self.speed;
    copy.timeOffset = self.timeOffset;
    copy.fillMode = self.fillMode;
    copy.timingFunction = self.timingFunction;
    return copy;
}
@end
@implementation CAPropertyAnimation
+ (instancetype)animationWithKeyPath:(NSString *)path {
    CAPropertyAnimation *animation = [self new];
    animation.keyPath = path;
    return animation;
}
- (id)copyWithZone:(void *)zone {
    CAPropertyAnimation *copy = [super copyWithZone:zone];
    copy.keyPath = self.keyPath;
    copy.additive = self.additive;
    return copy;
}
@end
@implementation CABasicAnimation
- (id)copyWithZone:(void *)zone {
    CABasicAnimation *copy = [super copyWithZone:zone];
    copy.fromValue = self.fromValue;
    copy.toValue = self.toValue;
    copy.byValue = self.byValue;
    return copy;
}
- (Sample)sampleAtProgress:(double)progress from:(double)own {
    const double by = [self.byValue doubleValue];
    double from = own, to = own;
    if (self.fromValue) {
        from = [self.fromValue doubleValue];
        if (!self.toValue) { to = self.byValue ? from + by : own; }
    } else if (self.byValue) {
        from = self.toValue ? [self.toValue doubleValue] - by : own;
        to = own + by;
    }
    if (self.toValue) { to = [self.toValue doubleValue]; }
    return (Sample){from + (to - from) * progress, nil};
}
@end

@implementation CAKeyframeAnimation {
    double *_times;  // of the copy that a layer holds
}
- (id)copyWithZone:(void *)zone {
    CAKeyframeAnimation *copy = [super copyWithZone:zone];
    copy.values = self.values;
    copy.keyTimes = self.keyTimes;
    copy.timingFunctions = self.timingFunctions;
    return copy;
}
- (void)requireSound {
    const NSUInteger count = self.values.count;
    if (count && self.keyTimes && self.keyTimes.count != count) {
        stop("%lu values have %lu key times", count, self.keyTimes.count);
    }
    if (count > 1 && self.timingFunctions && self.timingFunctions.count + 1 != count) {
        stop("%lu values have %lu timing functions", count, self.timingFunctions.count);
    }
    _times = malloc((count + 1) * sizeof(double));
    for (NSUInteger i = 0; i < count; ++i) {
        _times[i] = self.keyTimes ? [self.keyTimes[i] doubleValue]
                    : count > 1   ? (double)i / (double)(count - 1)
                                  : 0;
        if (i > 0 && _times[i] < _times[i - 1]) { stop("key time %lu is before its last", i); }
    }
}
- (Sample)sampleAtProgress:(double)progress from:(double)own {
    const NSUInteger count = self.values.count;
    if (!count) { return (Sample){own, nil}; }
    // The last key at or before the progress.
    NSUInteger low = 0, high = count;
    while (low < high) {
        const NSUInteger middle = (low + high) / 2;
        if (_times[middle] <= progress) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    const NSUInteger key = low ? low - 1 : 0;
    const id value = self.values[key];
    if (![value isKindOfNumber]) { return (Sample){0, value}; }
    const double start = [value doubleValue];
    if (!low || key + 1 == count) { return (Sample){start, nil}; }
    const double share = (progress - _times[key]) / (_times[key + 1] - _times[key]);
    const double end = [self.values[key + 1] doubleValue];
    CAMediaTimingFunction *function = self.timingFunctions ? self.timingFunctions[key] : nil;
    return (Sample){start + (end - start) * heightOfTiming(function, share), nil};
}
@end
@implementation CAAnimationGroup
- (id)copyWithZone:(void *)zone {
    CAAnimationGroup *copy = [super copyWithZone:zone];
    NSMutableArray *animations = [NSMutableArray new];
    for (CAAnimation *animation in self.animations) {
        [animations addObject:[animation copyWithZone:zone]];
    }
    copy.animations = animations;
    return copy;
}
- (void)requireSound {
    for (CAAnimation *animation in self.animations) { [animation requireSound]; }
}
@end

@implementation NSObject (Kinds)
- (BOOL)isKindOfNumber {
    return isa == [NSNumber class];
}
@end

// Of all passes; a duration of 0 counts as that of a transaction.
static double passDuration(CAAnimation *animation) {
    return animation.duration > 0 ? animation.duration : 0.25;
}
static double activeDuration(CAAnimation *animation) {
    const double passes = animation.repeatCount > 0 ? animation.repeatCount : 1;
    return passDuration(animation) * passes * (animation.autoreverses ? 2 : 1);
}
static BOOL fills(CAAnimation *animation, NSString *end) {
    return isEqual(animation.fillMode, kCAFillModeBoth) || isEqual(animation.fillMode, end);
}
// How far within one pass the animation is at a time of its parent; NO when it does not apply.
static BOOL progressAtTime(CAAnimation *animation, double parentTime, double *progress) {
    double time = (parentTime - animation.beginTime) * animation.speed;
    if (time < 0 && !fills(animation, kCAFillModeBackwards)) { return NO; }
    const double active = activeDuration(animation);
    if (time >= active && !fills(animation, kCAFillModeForwards)) { return NO; }
    time = (time < 0 ? 0 : time > active ? active : time) + animation.timeOffset;
    const double pass = passDuration(animation);
    double passes = time / pass;
    // The very end belongs to the last pass.
    double whole = time >= active && passes > 0 ? ceil(passes) - 1 : floor(passes);
    double share = passes - whole;
    if (animation.autoreverses && fmod(whole, 2) != 0) { share = 1 - share; }
    *progress = heightOfTiming(animation.timingFunction, share);
    return YES;
}

// All of a layer that key paths reach.
typedef struct {
    CGPoint position;
    TransformParts parts;
    double opacity, zPosition;
    id contents;
} Presentation;

static double *numberAtKeyPath(Presentation *shown, NSString *keyPath) {
    const struct { const char *path; double *number; } numbers[] = {
        {"opacity", &shown->opacity},
        {"position.x", &shown->position.x},
        {"position.y", &shown->position.y},
        {"transform.rotation", &shown->parts.rotation},
        {"transform.rotation.z", &shown->parts.rotation},
        {"transform.scale.x", &shown->parts.scaleX},
        {"transform.scale.y", &shown->parts.scaleY},
        {"transform.translation.x", &shown->parts.x},
        {"transform.translation.y", &shown->parts.y},
        {"zPosition", &shown->zPosition},
    };
    for (unsigned i = 0; i < sizeof numbers / sizeof *numbers; ++i) {
        if (strcmp(numbers[i].path, utf8(keyPath)) == 0) { return numbers[i].number; }
    }
    return NULL;
}

static void applyProperty(CAPropertyAnimation *animation, double progress, Presentation *shown) {
    if (strcmp(utf8(animation.keyPath), "contents") == 0) {
        const Sample sample = [animation sampleAtProgress:progress from:0];
        if (sample.object) { shown->contents = sample.object; }
        return;
    }
    if (strcmp(utf8(animation.keyPath), "transform.scale") == 0) {
        const double scale = [animation sampleAtProgress:progress from:shown->parts.scaleX].number;
        shown->parts.scaleX = shown->parts.scaleY = scale;
        return;
    }
    double *number = numberAtKeyPath(shown, animation.keyPath);
    if (!number) { return; }
    const double before = *number;
    *number = [animation sampleAtProgress:progress from:before].number;
    if (animation.additive) { *number += before; }
}
static void apply(CAAnimation *animation, double time, Presentation *shown) {
    double progress = 0;
    if (!progressAtTime(animation, time, &progress)) { return; }
    if ([animation class] != [CAAnimationGroup class]) {
        applyProperty((CAPropertyAnimation *)animation, progress, shown);
        return;
    }
    // A group's time, which cuts off what is longer.
    const double own = progress * passDuration(animation);
    for (CAAnimation *member in ((CAAnimationGroup *)animation).animations) {
        apply(member, own, shown);
    }
}

// Layers that hold animations, so that the clock finds them.
static NSMutableArray *allLayers;

@interface CALayer (Playing)
- (Presentation)presentationAtTime:(double)time;
- (void)stopAnimationsThatEnded;
@end

@implementation CALayer {
    @public
    NSMutableArray *_sublayers, *_animations, *_keys;
    CALayer *_superlayer;
    // Those that have told their delegates that they ended, though they stay.
    NSMutableArray *_toldAnimations;
}
+ (instancetype)layer {
    return [self new];
}
- (instancetype)init {
    _sublayers = [NSMutableArray new];
    _animations = [NSMutableArray new];
    _keys = [NSMutableArray new];
    _toldAnimations = [NSMutableArray new];
    self.anchorPoint = CGPointMake(0.5, 0.5);
    self.transform = identityTransform();
    self.opacity = 1;
    if (!allLayers) { allLayers = [NSMutableArray new]; }
    [allLayers addObject:self];
    return self;
}
- (void)addSublayer:(CALayer *)layer {
    if (!layer) { stop("nil is added to a layer"); }
    if (layer->_superlayer) {
        NSMutableArray *siblings = layer->_superlayer->_sublayers;
        for (NSUInteger i = siblings.count; i-- > 0;) {
            if (siblings[i] == layer) { [siblings removeObjectAtIndex:i]; }
        }
    }
    layer->_superlayer = self;
    [_sublayers addObject:layer];
}
- (void)addAnimation:(CAAnimation *)animation forKey:(NSString *)key {
    if (!animation) { stop("nil is added as an animation"); }
    [self removeAnimationForKey:key];
    CAAnimation *copy = [animation copyWithZone:NULL];
    [copy requireSound];
    if (copy.beginTime == 0) { copy.beginTime = mediaTime; }
    [_animations addObject:copy];
    [_keys addObject:key ? key : @""];
}
- (CAAnimation *)animationForKey:(NSString *)key {
    for (NSUInteger i = 0; i < _keys.count; ++i) {
        if (isEqual(_keys[i], key)) { return _animations[i]; }
    }
    return nil;
}
- (void)removeAnimationAt:(NSUInteger)index finished:(BOOL)finished {
    CAAnimation *animation = _animations[index];
    [_animations removeObjectAtIndex:index];
    [_keys removeObjectAtIndex:index];
    for (CAAnimation *told in _toldAnimations) {
        if (told == animation) { return; }
    }
    [animation.delegate animationDidStop:animation finished:finished];
}
- (void)removeAnimationForKey:(NSString *)key {
    for (NSUInteger i = 0; key && i < _keys.count; ++i) {
        if (isEqual(_keys[i], key)) {
            [self removeAnimationAt:i finished:NO];
            return;
        }
    }
}
- (void)removeAllAnimations {
    while (_animations.count) { [self removeAnimationAt:0 finished:NO]; }
}
- (void)stopAnimationsThatEnded {
    for (NSUInteger i = 0; i < _animations.count;) {
        CAAnimation *animation = _animations[i];
        const double end = animation.beginTime + activeDuration(animation) / animation.speed;
        const BOOL hasEnded = mediaTime >= end;
        if (hasEnded && animation.removedOnCompletion) {
            [self removeAnimationAt:i finished:YES];
            i = 0;
            continue;
        }
        if (hasEnded && animation.delegate) {
            CAAnimation *ended = animation;
            BOOL isTold = NO;
            for (CAAnimation *told in _toldAnimations) { isTold = isTold || told == ended; }
            if (!isTold) {
                [_toldAnimations addObject:ended];
                [ended.delegate animationDidStop:ended finished:YES];
            }
        }
        ++i;
    }
}
- (Presentation)presentationAtTime:(double)time {
    Presentation shown = {self.position, partsOfTransform(self.transform), self.opacity,
                          self.zPosition, self.contents};
    for (CAAnimation *animation in _animations) { apply(animation, time, &shown); }
    // No layer is more or less than there or not there.
    shown.opacity = shown.opacity < 0 ? 0 : shown.opacity > 1 ? 1 : shown.opacity;
    return shown;
}
@end

@implementation CATransaction
+ (void)begin {
}
+ (void)commit {
}
+ (void)setValue:(id)value forKey:(NSString *)key {
    (void)value;
    (void)key;
}
@end
