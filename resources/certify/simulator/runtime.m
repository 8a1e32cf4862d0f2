// Clang lays classes out for a runtime that places instance variables when a program starts; the
// runtime that we run on takes them as compiled. Each module is completed on its way there.

struct ClassRecord {
    Class isa;
    struct ClassRecord *superclass;  // its name, until the runtime links it
    const char *name;
    long version;
    unsigned long info;
    long instanceSize;  // of our own part and negative, until it is placed
    struct IvarList *ivars;
    void *ofTheRuntime[6];
    long abiVersion;
    int **ivarOffsets;
};
struct Ivar {
    const char *name, *type;
    int offset;
};
struct IvarList {
    int count;
    struct Ivar list[];
};
struct Symtab {
    unsigned long selectorCount;
    void *selectors;
    unsigned short classCount, categoryCount;
    void *definitions[];
};
struct Module {
    unsigned long version, size;
    const char *name;
    struct Symtab *symtab;
};
enum { kModuleVersionOfRuntime = 8 };

extern struct ClassRecord *objc_lookUpClass(const char *name);
extern void __real___objc_exec_class(struct Module *module);

static long sizeOfSuperclass(const struct Symtab *symtab, const struct ClassRecord *record) {
    const char *name = (const char *)record->superclass;
    if (!name) { return 0; }
    for (int i = 0; i < symtab->classCount; ++i) {
        const struct ClassRecord *other = symtab->definitions[i];
        if (strcmp(other->name, name) == 0) { return other->instanceSize; }
    }
    const struct ClassRecord *known = objc_lookUpClass(name);
    if (!known) {
        fprintf(stderr, "there is no class %s for %s\n", name, record->name);
        exit(EXIT_FAILURE);
    }
    return known->instanceSize;
}

// Superclasses come first in a module.
void __wrap___objc_exec_class(struct Module *module) {
    struct Symtab *symtab = module->symtab;
    module->version = kModuleVersionOfRuntime;
    for (int i = 0; i < symtab->classCount; ++i) {
        struct ClassRecord *record = symtab->definitions[i];
        if (record->instanceSize > 0) { continue; }
        const long before = sizeOfSuperclass(symtab, record);
        record->instanceSize = before - record->instanceSize;
        for (int k = 0; record->ivars && k < record->ivars->count; ++k) {
            record->ivars->list[k].offset += (int)before;
            *record->ivarOffsets[k] = record->ivars->list[k].offset;
        }
    }
    __real___objc_exec_class(module);
}

// Messages: clang asks for a slot, the runtime answers with the method.

struct Slot {
    void *owner, *cachedFor;
    const char *types;
    int version;
    void *method;
};
extern void *objc_msg_lookup(void *receiver, void *selector);
extern void *objc_msg_lookup_super(void *receiverAndClass, void *selector);

struct Slot *objc_msg_lookup_sender(void **receiver, void *selector, void *sender) {
    static struct Slot slot;
    (void)sender;
    slot.method = objc_msg_lookup(*receiver, selector);
    return &slot;
}
struct Slot *objc_slot_lookup_super(void *receiverAndClass, void *selector) {
    static struct Slot slot;
    slot.method = objc_msg_lookup_super(receiverAndClass, selector);
    return &slot;
}

// Blocks are never freed, so that what is on the stack of main() can stay there.
void *_NSConcreteGlobalBlock[32];
void *_NSConcreteStackBlock[32];
