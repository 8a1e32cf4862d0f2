// The classes of values and collections. Nothing is ever released.

extern id class_createInstance(Class class, unsigned long extraBytes);
extern const char *class_getName(Class class);
extern const char *sel_getName(SEL selector);

static jmp_buf playedCall;
static BOOL callIsPlayed = NO;
static char stopReason[400];

// What ends a program on a device ends the call that is being played.
static void stop(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(stopReason, sizeof stopReason, format, arguments);
    va_end(arguments);
    if (callIsPlayed) { longjmp(playedCall, 1); }
    fprintf(stderr, "%s\n", stopReason);
    exit(EXIT_FAILURE);
}

@interface NSObject (Runtime)
- (id)copyWithZone:(void *)zone;
@end
@implementation NSObject
+ (void)load {
}
+ (instancetype)new {
    return [[self alloc] init];
}
+ (instancetype)alloc {
    return class_createInstance(self, 0);
}
+ (Class)class {
    return self;
}
- (Class)class {
    return isa;
}
- (instancetype)init {
    return self;
}
- (id)retain {
    return self;
}
- (void)release {
}
- (id)autorelease {
    return self;
}
- (id)copyWithZone:(void *)zone {
    (void)zone;
    return self;
}
- (void)doesNotRecognize:(SEL)selector {
    stop("%s does not understand %s", class_getName(isa), sel_getName(selector));
}
@end

@interface NSString (Text)
- (const char *)UTF8String;
@end
@interface NSConstantString (Text)
+ (NSString *)stringWithText:(const char *)text;
@end

@implementation NSString
- (const char *)UTF8String {
    return "";
}
- (NSString *)stringByAppendingString:(NSString *)tail {
    if (!tail) { stop("nothing to append to a string"); }
    const char *head = [self UTF8String];
    char *joined = malloc(strlen(head) + strlen([tail UTF8String]) + 1);
    strcpy(joined, head);
    return [NSConstantString stringWithText:strcat(joined, [tail UTF8String])];
}
@end
@implementation NSConstantString
+ (NSString *)stringWithText:(const char *)text {
    NSConstantString *string = [self alloc];
    string->text = text;
    string->length = (unsigned int)strlen(text);
    return string;
}
- (const char *)UTF8String {
    return text;
}
@end

static const char *utf8(NSString *string) {
    return string ? [string UTF8String] : "";
}
static BOOL isEqual(NSString *a, NSString *b) {
    return a == b || (a && b && strcmp(utf8(a), utf8(b)) == 0);
}

@implementation NSNumber {
    double _value;
}
+ (NSNumber *)numberWithDouble:(double)value {
    NSNumber *number = [self alloc];
    number->_value = value;
    return number;
}
+ (NSNumber *)numberWithFloat:(float)value {
    return [self numberWithDouble:value];
}
+ (NSNumber *)numberWithInt:(int)value {
    return [self numberWithDouble:value];
}
- (float)floatValue {
    return (float)_value;
}
- (double)doubleValue {
    return _value;
}
@end

@implementation NSArray {
    @public
    id *_items;
    NSUInteger _count, _room;
}
+ (instancetype)array {
    return [self alloc];
}
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
    NSArray *array = [self alloc];
    array->_items = malloc(count * sizeof(id) + 1);
    array->_count = array->_room = count;
    for (NSUInteger i = 0; i < count; ++i) {
        if (!objects[i]) { stop("entry %lu of an array is nil", i); }
        array->_items[i] = objects[i];
    }
    return array;
}
- (id)objectAtIndexedSubscript:(NSUInteger)index {
    if (index >= _count) { stop("an array of %lu has no entry %lu", _count, index); }
    return _items[index];
}
- (NSUInteger)count {
    return _count;
}
- (id)lastObject {
    return _count ? _items[_count - 1] : nil;
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)length {
    (void)buffer;
    (void)length;
    static unsigned long unchanged;
    if (state->state) { return 0; }
    state->state = 1;
    state->itemsPtr = _items;
    state->mutationsPtr = &unchanged;
    return _count;
}
@end
@implementation NSMutableArray
- (void)addObject:(id)object {
    if (!object) { stop("nil is added to an array"); }
    if (_count == _room) {
        _room = 2 * _room + 4;
        _items = realloc(_items, _room * sizeof(id));
    }
    _items[_count++] = object;
}
- (void)removeObjectAtIndex:(NSUInteger)index {
    if (index >= _count) { stop("an array of %lu has no entry %lu", _count, index); }
    memmove(_items + index, _items + index + 1, (--_count - index) * sizeof(id));
}
@end

@interface NSMutableArray (Removing)
- (void)removeObjectAtIndex:(NSUInteger)index;
@end

// Keys are strings. Values keep the order in which their keys came.
@implementation NSDictionary {
    @public
    NSMutableArray *_keys, *_values;
    int *_slots;  // places in _keys plus 1, by hash
    NSUInteger _slotCount;
}
+ (instancetype)dictionary {
    NSDictionary *dictionary = [self alloc];
    dictionary->_keys = [NSMutableArray new];
    dictionary->_values = [NSMutableArray new];
    return dictionary;
}
static int *slotOfKey(NSDictionary *dictionary, NSString *key) {
    unsigned long hash = 5381;
    for (const char *byte = utf8(key); *byte; ++byte) { hash = hash * 33 + (unsigned char)*byte; }
    int *slots = dictionary->_slots;
    for (NSUInteger i = hash;; ++i) {
        int *slot = &slots[i % dictionary->_slotCount];
        if (!*slot || isEqual(dictionary->_keys[*slot - 1], key)) { return slot; }
    }
}
- (id)objectForKeyedSubscript:(id)key {
    if (!_slotCount || !key) { return nil; }
    const int slot = *slotOfKey(self, key);
    return slot ? _values[slot - 1] : nil;
}
- (NSArray *)allValues {
    return _values;
}
@end
@implementation NSMutableDictionary
static void makeRoom(NSDictionary *dictionary) {
    const NSUInteger count = [dictionary->_keys count];
    if (2 * (count + 1) <= dictionary->_slotCount) { return; }
    dictionary->_slotCount = 4 * (count + 1) + 1;
    dictionary->_slots = calloc(dictionary->_slotCount, sizeof(int));
    for (NSUInteger i = 0; i < count; ++i) {
        *slotOfKey(dictionary, dictionary->_keys[i]) = (int)i + 1;
    }
}
- (void)setObject:(id)object forKeyedSubscript:(id)key {
    if (!object || !key) { stop("nil is put into a dictionary"); }
    makeRoom(self);
    int *slot = slotOfKey(self, key);
    if (*slot) {
        _values->_items[*slot - 1] = object;
        return;
    }
    [_keys addObject:key];
    [_values addObject:object];
    *slot = (int)[_keys count];
}
@end

// Keys are compared as pointers.
@implementation NSMapTable {
    NSMutableArray *_keys, *_values;
}
+ (NSMapTable *)mapTableWithKeyOptions:(NSPointerFunctionsOptions)keys
                          valueOptions:(NSPointerFunctionsOptions)values {
    if (keys != NSPointerFunctionsOpaqueMemory || values != NSPointerFunctionsStrongMemory) {
        stop("a table of other options than opaque keys and strong values");
    }
    NSMapTable *table = [self new];
    table->_keys = [NSMutableArray new];
    table->_values = [NSMutableArray new];
    return table;
}
- (id)objectForKey:(id)key {
    for (NSUInteger i = _keys.count; i-- > 0;) {
        if (_keys[i] == key) { return _values[i]; }
    }
    return nil;
}
- (void)removeObjectForKey:(id)key {
    for (NSUInteger i = 0; i < _keys.count; ++i) {
        if (_keys[i] != key) { continue; }
        [_values removeObjectAtIndex:i];
        [_keys removeObjectAtIndex:i];
        return;
    }
}
- (void)setObject:(id)object forKey:(id)key {
    if (!key || !object) { stop("nil is put into a table"); }
    [self removeObjectForKey:key];
    [_keys addObject:key];
    [_values addObject:object];
}
@end

@implementation NSCoder
@end
@implementation NSNotification
@end

// Remembers who wants to know; views tell their observers.
@implementation NSNotificationCenter {
    @public
    id _observer, _object;
    SEL _selector;
    NSString *_name;
}
+ (NSNotificationCenter *)defaultCenter {
    static NSNotificationCenter *centre;
    if (!centre) { centre = [self new]; }
    return centre;
}
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSString *)name object:(id)object {
    _observer = observer;
    _selector = selector;
    _name = name;
    _object = object;
}
@end

// Resources lie in the folder "images" of the working directory.
@implementation NSBundle
+ (NSBundle *)bundleForClass:(Class)class {
    (void)class;
    static NSBundle *bundle;
    if (!bundle) { bundle = [self new]; }
    return bundle;
}
static NSString *pathOfResource(const char *name, const char *extension) {
    if (!*name || strchr(name, '/')) { return nil; }
    char path[4096];
    snprintf(path, sizeof path, "images/%s%s", name, extension);
    return access(path, R_OK) == 0 ? [NSConstantString stringWithText:strdup(path)] : nil;
}
- (NSString *)pathForResource:(NSString *)name ofType:(NSString *)extension {
    if (extension) { stop("resources are asked for by their whole names"); }
    return pathOfResource(utf8(name), "");
}
@end
