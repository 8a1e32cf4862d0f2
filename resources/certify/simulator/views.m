// Views and images of the platform that is played.

@interface NSObject (Image)
- (const char *)fileName;
@end

// Images are known by the names of their files.
static const char *fileNameOf(NSString *path) {
    const char *slash = strrchr(utf8(path), '/');
    return slash ? slash + 1 : utf8(path);
}

#ifdef PLAYS_MAC
@implementation NSImage {
    NSString *_path;
}
- (instancetype)initWithContentsOfFile:(NSString *)path {
    if (!path) { return nil; }
    _path = path;
    return self;
}
+ (NSImage *)imageNamed:(NSString *)name {
    return [[NSImage alloc] initWithContentsOfFile:[[NSBundle bundleForClass:self]
                                                       pathForImageResource:name]];
}
- (const char *)fileName {
    return fileNameOf(_path);
}
@end
// By its name alone, whatever kind of image it is.
@implementation NSBundle (Images)
- (NSString *)pathForImageResource:(NSString *)name {
    static const char *const extensions[] = {"", ".png", ".jpg", ".jpeg", ".gif", ".tiff"};
    for (unsigned i = 0; i < sizeof extensions / sizeof *extensions; ++i) {
        NSString *path = pathOfResource(utf8(name), extensions[i]);
        if (path) { return path; }
    }
    return nil;
}
@end

NSString *const NSViewFrameDidChangeNotification = @"NSViewFrameDidChangeNotification";

@implementation NSView {
    CALayer *_layer;
    BOOL _wantsLayer;
    CGRect _frame;
}
- (instancetype)init {
    return [self initWithFrame:CGRectMake(0, 0, 0, 0)];
}
- (instancetype)initWithFrame:(CGRect)frame {
    _frame = frame;
    return self;
}
- (instancetype)initWithCoder:(NSCoder *)coder {
    (void)coder;
    return [self initWithFrame:CGRectMake(0, 0, 0, 0)];
}
- (CGRect)frame {
    return _frame;
}
- (void)setFrame:(CGRect)frame {
    _frame = frame;
    NSNotificationCenter *centre = [NSNotificationCenter defaultCenter];
    if (centre->_object != self || !isEqual(centre->_name, NSViewFrameDidChangeNotification)) {
        return;
    }
    void (*notify)(id, SEL, id) =
        (void (*)(id, SEL, id))objc_msg_lookup(centre->_observer, centre->_selector);
    notify(centre->_observer, centre->_selector, [NSNotification new]);
}
- (CGRect)bounds {
    return CGRectMake(0, 0, _frame.size.width, _frame.size.height);
}
- (void)setBounds:(CGRect)bounds {
    _frame.size = bounds.size;
}
- (BOOL)wantsLayer {
    return _wantsLayer;
}
- (void)setWantsLayer:(BOOL)wants {
    _wantsLayer = wants;
    if (wants && !_layer) { _layer = [CALayer layer]; }
}
- (CALayer *)layer {
    return _layer;
}
- (void)setLayer:(CALayer *)layer {
    _layer = layer;
}
- (BOOL)isFlipped {
    return NO;
}
@end
// Frame-sliced animations name them here too, where no view of theirs is ever found.
@implementation UIImage
+ (UIImage *)imageNamed:(NSString *)name {
    (void)name;
    return nil;
}
@end
@implementation UIView
@end
@implementation UIImageView
@end
#else
@implementation UIImage {
    NSString *_path;
}
+ (UIImage *)imageWithContentsOfFile:(NSString *)path {
    if (!path) { return nil; }
    UIImage *image = [self new];
    image->_path = path;
    return image;
}
// Without an extension a name is that of a PNG.
+ (UIImage *)imageNamed:(NSString *)name {
    NSString *path = pathOfResource(utf8(name), "");
    return [self imageWithContentsOfFile:path ? path : pathOfResource(utf8(name), ".png")];
}
- (CGImageRef)CGImage {
    return (CGImageRef)(void *)self;
}
- (const char *)fileName {
    return fileNameOf(_path);
}
@end

@implementation UIView {
    CALayer *_layer;
    CGRect _frame;
}
- (instancetype)init {
    return [self initWithFrame:CGRectMake(0, 0, 0, 0)];
}
- (instancetype)initWithFrame:(CGRect)frame {
    _layer = [CALayer layer];
    self.frame = frame;
    return self;
}
- (instancetype)initWithCoder:(NSCoder *)coder {
    (void)coder;
    return [self initWithFrame:CGRectMake(0, 0, 0, 0)];
}
- (CALayer *)layer {
    return _layer;
}
- (CGRect)bounds {
    return _layer.bounds;
}
- (void)setBounds:(CGRect)bounds {
    _layer.bounds = bounds;
}
- (CGRect)frame {
    const CGSize size = _layer.bounds.size;
    return CGRectMake(_layer.position.x - size.width * _layer.anchorPoint.x,
                      _layer.position.y - size.height * _layer.anchorPoint.y, size.width,
                      size.height);
}
- (void)setFrame:(CGRect)frame {
    _layer.bounds = CGRectMake(0, 0, frame.size.width, frame.size.height);
    _layer.position = CGPointMake(frame.origin.x + frame.size.width * _layer.anchorPoint.x,
                                  frame.origin.y + frame.size.height * _layer.anchorPoint.y);
}
- (CGPoint)center {
    return _layer.position;
}
- (void)setCenter:(CGPoint)center {
    _layer.position = center;
}
- (CGFloat)alpha {
    return _layer.opacity;
}
- (void)setAlpha:(CGFloat)alpha {
    _layer.opacity = (float)alpha;
}
- (CGAffineTransform)transform {
    return toAffine(_layer.transform);
}
- (void)setTransform:(CGAffineTransform)transform {
    _layer.transform = fromAffine(transform);
}
- (void)addSubview:(UIView *)view {
    [_layer addSublayer:view.layer];
}
- (void)layoutSubviews {
}
@end
@implementation UIImageView {
    UIImage *_shownImage;
}
- (UIImage *)image {
    return _shownImage;
}
- (void)setImage:(UIImage *)image {
    _shownImage = image;
    self.layer.contents = (id)image.CGImage;
}
@end
@implementation UIButton
+ (instancetype)buttonWithType:(UIButtonType)type {
    (void)type;
    return [self new];
}
- (void)setImage:(UIImage *)image forState:(UIControlState)state {
    if (state == UIControlStateNormal) { self.layer.contents = (id)image.CGImage; }
}
@end
@implementation LFTRecordableView
@end
@implementation LFTRecordableImageView
@end
@implementation LFTPuppetView
@end
#endif
