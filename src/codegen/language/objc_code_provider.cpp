#include "codegen/language/objc_code_provider.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tweenery {

// Files and class

void PCObjCCodeProvider::addTopComments() {
    m_header += topCommentsForFileName(generatedClassName() + ".h");
    code() += topCommentsForFileName(generatedClassName() + ".m");
}

void PCObjCCodeProvider::beginImports() {
    m_header += '\n';
    code() += '\n';
}

void PCObjCCodeProvider::addFrameworkDependency(Text frameworkName) {
    append(m_header, "\n#import <%@/%@.h>", frameworkName, frameworkName);
}

void PCObjCCodeProvider::addClassDependency(Text className) {
    append(m_header, "\n#import \"%@.h\"", className);
}

void PCObjCCodeProvider::endImports() {
    append(code(), "\n#import \"%@.h\"", generatedClassName());
}

void PCObjCCodeProvider::addFlippedViewMethod() {
    append(code(),
           "\n\n"
           "- (BOOL)isFlipped {\n"
           "\treturn YES;\n"
           "}\n");
}

void PCObjCCodeProvider::beginClassDefinitionWithSuperName(Text superName,
                                                           bool useCompletionBlocksTable) {
    append(m_header,
           "\n\nIB_DESIGNABLE"
           "\n@interface %@ : %@"
           "\n",
           generatedClassName(), superName);
    if (useCompletionBlocksTable) {
        append(code(),
               "\n\n@interface %@ ()"
               "\n@property (strong, nonatomic) NSMapTable *completionBlocksByAnimation;"
               "\n@end",
               generatedClassName());
    }
    append(code(), "\n\n@implementation %@", generatedClassName());
}

void PCObjCCodeProvider::addViewsByNameProperty() {
    append(m_header, "\n@property (strong, nonatomic) NSDictionary *viewsByName;");
}

void PCObjCCodeProvider::addLayersByNameProperty() {
    append(m_header, "\n@property (strong, nonatomic) NSDictionary *layersByName;");
}

void PCObjCCodeProvider::addInitializersForViewWithCanvasSize(QSizeF size) {
    append(code(),
           "\n\n- (instancetype)init\n{\n\treturn [self initWithFrame:CGRectMake(0,0,%@,%@)];\n}",
           wholeLength(size.width()), wholeLength(size.height()));
    append(code(),
           "\n\n- (instancetype)initWithFrame:(CGRect)frame\n{\n\tself = [super "
           "initWithFrame:frame];\n\tif (self)\n\t{\n\t\t[self setupHierarchy];\n\t}\n\treturn "
           "self;\n}");
    append(code(),
           "\n\n- (instancetype)initWithCoder:(NSCoder *)coder\n{\n\tself = [super "
           "initWithCoder:coder];\n\tif (self)\n\t{\n\t\t[self setupHierarchy];\n\t}\n\treturn "
           "self;\n}");
}

void PCObjCCodeProvider::addCodeMarkWithName(Text name) {
    append(code(), "\n\n#pragma mark - %@", comment(name));
}

void PCObjCCodeProvider::addLayoutSubelements() {
    if (generateForMac()) {
        append(code(),
               "\n\n- (void)frameDidChange:(NSNotification *)notification"
               "\n{"
               "\n\tCALayer *scalingView = self.layersByName[@\"__scaling__\"];"
               "\n\tfloat xScale = self.bounds.size.width / scalingView.bounds.size.width;"
               "\n\tfloat yScale = self.bounds.size.height / scalingView.bounds.size.height;"
               "\n\tfloat scale = MIN(xScale, yScale);"
               "\n\txScale = scale;"
               "\n\tyScale = scale;"
               "\n\t[CATransaction begin];"
               "\n\t[CATransaction setValue:(id)kCFBooleanTrue "
               "forKey:kCATransactionDisableActions];"
               "\n\tscalingView.transform = CATransform3DMakeScale(xScale, yScale, 1.0);"
               "\n\tscalingView.position = CGPointMake(CGRectGetMidX(self.bounds), "
               "CGRectGetMidY(self.bounds));"
               "\n\t[CATransaction commit];"
               "\n}");
    } else {
        append(code(),
               "\n\n- (void)layoutSubviews"
               "\n{"
               "\n\t[super layoutSubviews];"
               "\n\n\tUIView *scalingView = self.viewsByName[@\"__scaling__\"];"
               "\n\tfloat xScale = self.bounds.size.width / scalingView.bounds.size.width;"
               "\n\tfloat yScale = self.bounds.size.height / scalingView.bounds.size.height;"
               "\n\tswitch (self.contentMode) {"
               "\n\t\tcase UIViewContentModeScaleToFill:"
               "\n\t\t\tbreak;"
               "\n\t\tcase UIViewContentModeScaleAspectFill:"
               "\n\t\t{"
               "\n\t\t\tfloat scale = MAX(xScale, yScale);"
               "\n\t\t\txScale = scale;"
               "\n\t\t\tyScale = scale;"
               "\n\t\t\tbreak;"
               "\n\t\t}"
               "\n\t\tdefault:"
               "\n\t\t{"
               "\n\t\t\tfloat scale = MIN(xScale, yScale);"
               "\n\t\t\txScale = scale;"
               "\n\t\t\tyScale = scale;"
               "\n\t\t\tbreak;"
               "\n\t\t}"
               "\n\t}"
               "\n\tscalingView.transform = CGAffineTransformMakeScale(xScale, yScale);"
               "\n\tscalingView.center = CGPointMake(CGRectGetMidX(self.bounds), "
               "CGRectGetMidY(self.bounds));"
               "\n}");
    }
}

void PCObjCCodeProvider::endClassDefinition() {
    append(code(), "\n\n@end");
    append(m_header, "\n\n@end");
}

FileContents PCObjCCodeProvider::fileContentsByName() {
    const QString className = QString::fromStdString(generatedClassName());
    FileContents contents;
    contents[className + u".m"_s] = takeCode();
    contents[className + u".h"_s] = {std::exchange(m_header, {})};
    return contents;
}

// setupHierarchy

void PCObjCCodeProvider::setWantsLayer(bool wantsLayer, Text variableName) {
    append(code(), "\n\t[%@ setWantsLayer:%@];", variableName, wantsLayer ? "YES" : "NO");
}

void PCObjCCodeProvider::beginSetupAndUseCompletionBlocksTable(bool useCompletionBlocksTable) {
    append(code(),
           "\n\n- (void)setupHierarchy"
           "\n{");
    if (useCompletionBlocksTable) {
        append(code(),
               "\n\tself.completionBlocksByAnimation = [NSMapTable "
               "mapTableWithKeyOptions:NSPointerFunctionsOpaqueMemory "
               "valueOptions:NSPointerFunctionsStrongMemory];");
    }
    if (generateForMac()) {
        append(code(),
               "\n\t[[NSNotificationCenter defaultCenter] addObserver:self "
               "selector:@selector(frameDidChange:) name:NSViewFrameDidChangeNotification "
               "object:self];");
    }
}

void PCObjCCodeProvider::addLocalSetupVariablesIncludesLayer(bool includesLayers, bool andViews) {
    if (includesLayers) {
        append(code(), "\n\tNSMutableDictionary *layersByName = [NSMutableDictionary dictionary];");
    }
    if (andViews) {
        append(code(), "\n\tNSMutableDictionary *viewsByName = [NSMutableDictionary dictionary];");
    }
    append(code(), "\n\tNSBundle *bundle = [NSBundle bundleForClass:[self class]];");
}

void PCObjCCodeProvider::addScalingContainerWithSize(QSizeF size, bool, bool clippedToBounds) {
    code() += generateForMac() ? "\n\n\tCALayer *__scaling__ = [CALayer layer];"
                               : "\n\n\tUIView *__scaling__ = [UIView new];";
    append(code(), "\n\t__scaling__.bounds = CGRectMake(0, 0, %@, %@);", wholeLength(size.width()),
           wholeLength(size.height()));
    append(code(), "\n\t__scaling__.%@ = CGPointMake(%0.1f, %0.1f);",
           generateForMac() ? "position" : "center", size.width() / 2, size.height() / 2);
    if (clippedToBounds) {
        code() += generateForMac() ? "\n\t__scaling__.masksToBounds = YES;"
                                   : "\n\t__scaling__.layer.masksToBounds = YES;";
    }
    code() += generateForMac() ? "\n\t[self.layer addSublayer:__scaling__];"
                                 "\n\tlayersByName[@\"__scaling__\"] = __scaling__;"
                               : "\n\t[self addSubview:__scaling__];"
                                 "\n\tviewsByName[@\"__scaling__\"] = __scaling__;";
}

void PCObjCCodeProvider::addLayerWithVariableName(Text variableName, Text elementName) {
    append(code(),
           "\n\tCALayer *%@ = [CALayer layer];"
           "\n\t%@.name = @\"%@\";",
           variableName, variableName, literal(elementName));
}

void PCObjCCodeProvider::addVariableWithName(Text variableName, Text type) {
    append(code(), "\n\t%@ *%@ = [%@ new];", type, variableName, type);
}

void PCObjCCodeProvider::addCustomButtonVariableWithName(Text variableName) {
    append(code(), "\n\tUIButton *%@ = [UIButton buttonWithType:UIButtonTypeCustom];",
           variableName);
}

void PCObjCCodeProvider::setFrameWithRect(QRectF rect, Text variableName) {
    append(code(), "\n\t%@.frame = CGRectMake(%0.3f, %0.3f, %0.3f, %0.3f);", variableName, rect.x(),
           rect.y(), rect.width(), rect.height());
}

void PCObjCCodeProvider::setBoundsWithSize(QSizeF size, Text variableName) {
    append(code(), "\n\t%@.bounds = CGRectMake(0, 0, %0.1f, %0.1f);", variableName, size.width(),
           size.height());
}

void PCObjCCodeProvider::setAnchor(QPointF anchor, Text variableName, bool isLayer) {
    append(code(), "\n\t%@%@.anchorPoint = CGPointMake(%0.3f, %0.3f);", variableName,
           isLayer ? "" : ".layer", anchor.x(), anchor.y());
}

void PCObjCCodeProvider::addImageVariableWithName(Text variableName, Text imageFileName) {
    if (generateForMac()) {
        append(code(),
               "\n\tNSImage *%@ = [[NSImage alloc] initWithContentsOfFile:[bundle "
               "pathForImageResource:@\"%@\"]];",
               variableName, literalWithoutExtension(imageFileName));
    } else {
        append(code(),
               "\n\tUIImage *%@ = [UIImage imageWithContentsOfFile:[bundle "
               "pathForResource:@\"%@\" ofType:nil]];",
               variableName, literal(imageFileName));
    }
}

void PCObjCCodeProvider::setLayerContents(Text layerVariableName, Text imageVariableName) {
    if (generateForMac()) {
        append(code(), "\n\t%@.contents = (id)%@;", layerVariableName, imageVariableName);
    } else {
        append(code(), "\n\t%@.contents = (__bridge id)%@.CGImage;", layerVariableName,
               imageVariableName);
    }
}

void PCObjCCodeProvider::setImageFromVariableNameOnImageView(Text imageVariableName,
                                                             Text viewVariableName) {
    append(code(), "\n\t%@.image = %@;", viewVariableName, imageVariableName);
}

void PCObjCCodeProvider::setImageFromVariableNameOnButton(Text imageVariableName,
                                                          Text buttonVariableName) {
    append(code(), "\n\t[%@ setImage:%@ forState:UIControlStateNormal];", buttonVariableName,
           imageVariableName);
}

void PCObjCCodeProvider::setCenterContentModeOnVariableNamed(Text variableName) {
    if (generateForMac()) { return; }
    append(code(), "\n\t%@.contentMode = UIViewContentModeCenter;", variableName);
}

void PCObjCCodeProvider::setPosition(QPointF position, Text variableName, bool isLayer, bool) {
    append(code(), "\n\t%@.%@ = CGPointMake(%0.3f, %0.3f);", variableName,
           isLayer ? "position" : "layer.position", position.x(), position.y());
}

void PCObjCCodeProvider::setOpacity(float opacity, Text variableName, bool isLayer) {
    append(code(), "\n\t%@.%@ = %0.2f;", variableName, isLayer ? "opacity" : "alpha", opacity);
}

void PCObjCCodeProvider::setTransformWithXScaleAndZRotation(float xScale, float yScale,
                                                            float zRotation, Text variableName,
                                                            bool isLayer) {
    if (isLayer) {
        append(code(),
               "\n\t%@.transform = CATransform3DScale(CATransform3DMakeRotation(%0.2f, 0, 0, 1), "
               "%0.2f, %0.2f, 1.0);",
               variableName, zRotation, xScale, yScale);
    } else {
        append(code(),
               "\n\t%@.transform = CGAffineTransformScale(CGAffineTransformMakeRotation(%0.2f), "
               "%0.2f, %0.2f);",
               variableName, zRotation, xScale, yScale);
    }
}

void PCObjCCodeProvider::setTransformWithXScale(float xScale, float yScale, Text variableName,
                                                bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t%@.transform = CATransform3DMakeScale(%0.2f, %0.2f, 1.0);",
               variableName, xScale, yScale);
    } else {
        append(code(), "\n\t%@.transform = CGAffineTransformMakeScale(%0.2f, %0.2f);", variableName,
               xScale, yScale);
    }
}

void PCObjCCodeProvider::setTransformWithZRotation(float zRotation, Text variableName,
                                                   bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t%@.transform = CATransform3DMakeRotation(%0.3f, 0, 0, 1);",
               variableName, zRotation);
    } else {
        append(code(), "\n\t%@.transform = CGAffineTransformMakeRotation(%0.3f);", variableName,
               zRotation);
    }
}

void PCObjCCodeProvider::addElementWithName(Text variableName, bool isLayer,
                                            Text parentVariableName, bool parentIsLayer) {
    append(code(), "\n\t[%@%@ %@:%@];", parentVariableName,
           isLayer && !parentIsLayer ? ".layer" : "", isLayer ? "addSublayer" : "addSubview",
           variableName);
}

void PCObjCCodeProvider::addElementToByNameDictionaryWithVariableName(Text variableName,
                                                                      Text userName, bool isLayer) {
    append(code(), "\n\t%@[@\"%@\"] = %@;", isLayer ? "layersByName" : "viewsByName",
           literal(userName), variableName);
}

void PCObjCCodeProvider::endSetupIncludesLayers(bool includesLayers, bool includesViews) {
    append(code(), "\n");
    if (includesLayers) { append(code(), "\n\tself.layersByName = layersByName;"); }
    if (includesViews) { append(code(), "\n\tself.viewsByName = viewsByName;"); }
    append(code(), "\n}");
}

}  // namespace tweenery
