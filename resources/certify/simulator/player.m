// Does what a script says, a line at a time, and prints what the layers show. Texts are an
// x and hexadecimal bytes, numbers as C has them, times in seconds of the clock.
//
//   view CLASS                  makes a view, and winds the clock back
//   element NAME KIND           one that is looked at from now on: a V(iew) or a L(ayer)
//   scene                       prints all elements as they were set up
//   call SELECTOR [ARGUMENT...] sends a message to the view
//   look TIME ELEMENT...        prints elements as presented at a time; the clock stays
//   order TIME ELEMENT          prints the elements below one (-1: the scene), back to front
//   clock TIME                  sets the clock; what ends on the way ends
//   animations                  prints how many there are
//   resize WIDTH HEIGHT         of the view; prints how the scene lies in it

// Of the generated class.
@interface NSObject (Scene)
- (NSDictionary *)layersByName;
- (NSDictionary *)viewsByName;
@end

enum { kMostWords = 64 };
typedef struct { char *words[kMostWords]; int count; } Line;

typedef struct { const char *name; char kind; CALayer *layer; } Element;
static Element *elements;
static int elementCount;

static id view;
static int completions, finishedCompletions;

static char *textOf(const char *word) {
    const char *hexadecimal = word + 1;
    const size_t length = strlen(hexadecimal) / 2;
    char *text = calloc(length + 1, 1);
    for (size_t i = 0; i < length; ++i) {
        unsigned byte = 0;
        sscanf(hexadecimal + 2 * i, "%2x", &byte);
        text[i] = (char)byte;
    }
    return text;
}
static void printHexadecimal(const char *text) {
    putchar('x');
    for (; *text; ++text) { printf("%02x", (unsigned char)*text); }
}

static CALayer *layerOfElement(const Element *element) {
    NSString *name = [NSConstantString stringWithText:element->name];
    if (element->kind == 'L') { return [view layersByName][name]; }
    return [[view viewsByName][name] layer];
}
static CALayer *sceneLayer(void) {
    CALayer *layer = [view layer];
    return layer->_sublayers.count ? layer->_sublayers[0] : nil;
}
static int indexOfElement(const CALayer *layer) {
    for (int i = 0; i < elementCount; ++i) {
        if (elements[i].layer == layer) { return i; }
    }
    return -1;
}

static void makeView(const char *className) {
    extern Class objc_getClass(const char *);
    mediaTime = 0;
    allLayers = [NSMutableArray new];
    completions = finishedCompletions = 0;
    const Class class = objc_getClass(className);
    if (!class) { stop("there is no class %s", className); }
    view = [[class alloc] init];
#ifndef PLAYS_MAC
    [view layoutSubviews];
#endif
    for (int i = 0; i < elementCount; ++i) { elements[i].layer = layerOfElement(&elements[i]); }
}

static void printPresented(int index, double time) {
    const CALayer *layer = elements[index].layer;
    if (!layer) {
        printf("none %d\n", index);
        return;
    }
    const Presentation shown = [layer presentationAtTime:time];
    printf("shown %d %.17g %.17g %.17g %.17g %.17g %.17g ", index, shown.position.x + shown.parts.x,
           shown.position.y + shown.parts.y, shown.parts.scaleX, shown.parts.scaleY,
           shown.parts.rotation, shown.opacity);
    printHexadecimal(shown.contents ? [shown.contents fileName] : "");
    putchar('\n');
}

static void printScene(void) {
    const CALayer *scene = sceneLayer();
    for (int i = 0; i < elementCount; ++i) {
        const CALayer *layer = elements[i].layer;
        if (!layer) {
            printf("none %d\n", i);
            continue;
        }
        const CALayer *parent = layer->_superlayer;
        printf("setup %d %d %.17g %.17g %.17g %.17g\n", i,
               parent == scene ? -1 : parent ? indexOfElement(parent) : -2, layer.anchorPoint.x,
               layer.anchorPoint.y, layer.bounds.size.width, layer.bounds.size.height);
    }
    if (scene) {
        printf("scene %.17g %.17g %d\n", scene.bounds.size.width, scene.bounds.size.height,
               scene.masksToBounds);
    }
}

static void printOrder(double time, const CALayer *parent) {
    const NSUInteger count = parent ? parent->_sublayers.count : 0;
    double *heights = malloc((count + 1) * sizeof(double));
    int *order = malloc((count + 1) * sizeof(int));
    for (NSUInteger i = 0; i < count; ++i) {
        CALayer *layer = parent->_sublayers[i];
        const double height = [layer presentationAtTime:time].zPosition;
        NSUInteger place = i;
        for (; place > 0 && heights[place - 1] > height; --place) {
            heights[place] = heights[place - 1];
            order[place] = order[place - 1];
        }
        heights[place] = height;
        order[place] = indexOfElement(layer);
    }
    printf("order");
    for (NSUInteger i = 0; i < count; ++i) { printf(" %d", order[i]); }
    putchar('\n');
    free(heights);
    free(order);
}

static void (^const completionBlock)(BOOL) = ^(BOOL finished) {
    ++completions;
    if (finished) { ++finishedCompletions; }
};

static NSArray *numbersOf(const char *list) {
    NSMutableArray *numbers = [NSMutableArray new];
    for (char *rest = (char *)list; *rest;) {
        [numbers addObject:[NSNumber numberWithDouble:strtod(rest, &rest)]];
        if (*rest == ',') { ++rest; }
    }
    return numbers;
}

// Arguments: b0 b1 (BOOL), d1.5 (CFTimeInterval), sboth (fill mode), c (our block), n (no block),
// i3 (int), f0.5 (float), a0,1 (an array of numbers).
static void callView(const char *selectorName, char **arguments, int count) {
    extern SEL sel_registerName(const char *);
    const SEL selector = sel_registerName(selectorName);
    double number = 0;
    float single = 0;
    BOOL wasNumber = NO, wasSingle = NO;
    // Integers and pointers travel in the same registers.
    void *words[4] = {0};
    int used = 0;
    for (int i = 0; i < count; ++i) {
        const char *value = arguments[i] + 1;
        switch (arguments[i][0]) {
            case 'd': number = strtod(value, NULL), wasNumber = YES; break;
            case 'f': single = strtof(value, NULL), wasSingle = YES; break;
            case 'b':
            case 'i': words[used++] = (void *)strtol(value, NULL, 10); break;
            case 's': words[used++] = [NSConstantString stringWithText:strdup(value)]; break;
            case 'c': words[used++] = (void *)completionBlock; break;
            case 'a': words[used++] = numbersOf(value); break;
            default: words[used++] = NULL;
        }
    }
    void *method = objc_msg_lookup(view, selector);
    if (wasNumber) {
        ((void (*)(id, SEL, double, void *, void *, void *, void *))method)(
            view, selector, number, words[0], words[1], words[2], words[3]);
    } else if (wasSingle) {
        ((void (*)(id, SEL, float))method)(view, selector, single);
    } else {
        ((void (*)(id, SEL, void *, void *, void *, void *))method)(view, selector, words[0],
                                                                  words[1], words[2], words[3]);
    }
}

static void setClock(double time) {
    mediaTime = time;
    for (NSUInteger i = 0; i < allLayers.count; ++i) { [allLayers[i] stopAnimationsThatEnded]; }
    printf("completions %d %d\n", completions, finishedCompletions);
}

static void printAnimations(void) {
    NSUInteger count = 0;
    for (CALayer *layer in allLayers) { count += layer->_animations.count; }
    printf("animations %lu\n", count);
}

static void resizeView(double width, double height) {
    [view setFrame:CGRectMake(0, 0, width, height)];
#ifndef PLAYS_MAC
    [view layoutSubviews];
#endif
    const Presentation shown = [sceneLayer() presentationAtTime:mediaTime];
    printf("fit %.17g %.17g %.17g %.17g\n", shown.position.x, shown.position.y, shown.parts.scaleX,
           shown.parts.scaleY);
}

static void addElement(char *name, char kind) {
    elements = realloc(elements, (size_t)(elementCount + 1) * sizeof(Element));
    elements[elementCount++] = (Element){name, kind, nil};
}

static void perform(Line *line) {
    char **words = line->words;
    const char *verb = words[0];
    if (strcmp(verb, "view") == 0) {
        makeView(textOf(words[1]));
    } else if (strcmp(verb, "element") == 0) {
        addElement(textOf(words[1]), words[2][0]);
    } else if (strcmp(verb, "scene") == 0) {
        printScene();
    } else if (strcmp(verb, "call") == 0) {
        callView(textOf(words[1]), words + 2, line->count - 2);
    } else if (strcmp(verb, "look") == 0) {
        const double time = strtod(words[1], NULL);
        for (int i = 2; i < line->count; ++i) { printPresented(atoi(words[i]), time); }
    } else if (strcmp(verb, "order") == 0) {
        const int parent = atoi(words[2]);
        printOrder(strtod(words[1], NULL), parent < 0 ? sceneLayer() : elements[parent].layer);
    } else if (strcmp(verb, "clock") == 0) {
        setClock(strtod(words[1], NULL));
    } else if (strcmp(verb, "animations") == 0) {
        printAnimations();
    } else if (strcmp(verb, "resize") == 0) {
        resizeView(strtod(words[1], NULL), strtod(words[2], NULL));
    } else {
        stop("the script says %s", verb);
    }
}

// What stops a program on a device ends the line, and the next one begins.
static void play(Line *line) {
    callIsPlayed = YES;
    if (setjmp(playedCall) == 0) {
        perform(line);
    } else {
        printf("stopped ");
        printHexadecimal(stopReason);
        putchar('\n');
    }
    callIsPlayed = NO;
}

int main(void) {
    char *text = NULL;
    size_t size = 0;
    while (getline(&text, &size, stdin) > 0) {
        Line line = {{0}, 0};
        for (char *word = strtok(text, " \n"); word && line.count < kMostWords;
             word = strtok(NULL, " \n")) {
            line.words[line.count++] = word;
        }
        if (line.count) { play(&line); }
        puts(".");
    }
    return EXIT_SUCCESS;
}
