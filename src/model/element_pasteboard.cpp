// The pasteboard form of an element and its descendants.

#include <cmath>
#include <limits>

#include "base/errors.h"
#include "model/element.h"
#include "model/element_placement.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct TimelineKey {
    PCPropertyType type;
    const char* key;
};

constexpr std::array<TimelineKey, kElementTimelineCount> kTimelineKeys{{
    {PCPropertyTypeScaleX, "ScaleXTimelineData"},
    {PCPropertyTypeScaleY, "ScaleYTimelineData"},
    {PCPropertyTypeTranslationX, "TranslationXTimelineData"},
    {PCPropertyTypeTranslationY, "TranslationYTimelineData"},
    {PCPropertyTypeZRotation, "ZRotationTimelineData"},
    {PCPropertyTypeOpacity, "OpacityTimelineData"},
    {PCPropertyTypeChildrenZPositions, "ChildrenZPositionsTimelineData"},
    {PCPropertyTypeImageContents, "ImageContentsTimelineData"},
}};

[[noreturn]] void refuse(const QString& reason) {
    throw InputError(u"pasteboard"_s, reason);
}

QVariantMap pointPlist(QPointF point) {
    return {{u"X"_s, point.x()}, {u"Y"_s, point.y()}};
}
QVariantMap sizePlist(QSizeF size) {
    return {{u"Width"_s, size.width()}, {u"Height"_s, size.height()}};
}

// Numbers that 32 bits cannot hold could not be stored.
double numberFrom(const QVariantMap& plist, const QString& key, double missing) {
    if (!plist.contains(key)) { return missing; }
    bool isNumber = false;
    const double number = plist.value(key).toDouble(&isNumber);
    constexpr double kGreatest = std::numeric_limits<float>::max();
    if (!isNumber || !(std::abs(number) <= kGreatest)) {
        refuse(u"holds no finite number under %1"_s.arg(key));
    }
    return number;
}

QPointF pointFrom(const QVariantMap& plist, const QString& key, QPointF missing) {
    const QVariantMap point = plist.value(key).toMap();
    return {numberFrom(point, u"X"_s, missing.x()), numberFrom(point, u"Y"_s, missing.y())};
}

QSizeF sizeFrom(const QVariantMap& plist, const QString& key) {
    const QVariantMap size = plist.value(key).toMap();
    return {numberFrom(size, u"Width"_s, 0), numberFrom(size, u"Height"_s, 0)};
}

}  // namespace

const QString& PCElement::pasteboardType() {
    static const QString kType = u"com.lumenfold.tweenery.pasteboardpcelement"_s;
    return kType;
}

QVariantMap PCElement::copyablePlistRepresentation() const {
    QVariantMap plist{{u"layerName"_s, name()},
                      {u"layerScale"_s, pointPlist(m_scale)},
                      {u"layerIsHidden"_s, m_hidden},
                      {u"layerIsLocked"_s, m_locked},
                      {u"layerOpacity"_s, m_opacity},
                      {u"layerPosition"_s, pointPlist(m_position)},
                      {u"layerRotationZ"_s, m_zRotation},
                      {u"layerAnchorPoint"_s, pointPlist(m_anchorPoint)},
                      {u"layerSize"_s, sizePlist(m_size)},
                      {u"layerIsGroup"_s, m_group},
                      {u"expanded"_s, m_expanded},
                      {u"scalesLocked"_s, m_scalesLocked}};
    QVariantList children;
    for (const Ptr& child : m_subelements) {
        children += QVariant(child->copyablePlistRepresentation());
    }
    plist.insert(u"layerSublayers"_s, children);
    if (!m_imageName.isNull()) { plist.insert(u"layerImageName"_s, m_imageName); }
    const EditContext* owner = project();
    if (!owner || owner->isSetupMode()) { return plist; }
    for (const auto& [type, key] : kTimelineKeys) {
        if (const auto attached = timeline(type)) {
            plist.insert(QString::fromLatin1(key),
                         KeyedArchiver::archivedDataWithRootObject(*attached));
        }
    }
    return plist;
}

QVariantList PCElement::pasteboardPropertyList() const {
    QVariantMap plist = copyablePlistRepresentation();
    const EditContext* owner = project();
    if (!owner) { return {plist}; }
    const ElementPlacement onCanvas = placementUnder(*this, *owner->canvas());
    plist.insert(u"layerScale"_s, pointPlist(onCanvas.scale));
    plist.insert(u"layerPosition"_s, pointPlist(onCanvas.position));
    plist.insert(u"layerRotationZ"_s, onCanvas.rotation);
    return {plist};
}

PCElement::Ptr PCElement::elementWithPasteablePlist(const QVariantMap& plist,
                                                    const std::shared_ptr<EditContext>& project) {
    return pasteTree(plist, project, 1);
}

PCElement::Ptr PCElement::initWithPasteboardPropertyList(const QVariantList& plist) {
    if (plist.isEmpty()) { refuse(u"holds no element"_s); }
    return elementWithPasteablePlist(plist.first().toMap(), nullptr);
}

PCElement::Ptr PCElement::pasteTree(const QVariantMap& plist,
                                    const std::shared_ptr<EditContext>& project, int depth) {
    if (plist.isEmpty()) { refuse(u"holds no element"_s); }
    if (depth > kMaximumDepth) {
        refuse(u"nests its elements more than %1 levels deep"_s.arg(kMaximumDepth));
    }
    Ptr element = init();
    element->m_project = WeakRef<EditContext>(project);
    element->setFromPlist(plist);
    for (const QVariant& item : plist.value(u"layerSublayers"_s).toList()) {
        Ptr child = pasteTree(item.toMap(), project, depth + 1);
        child->m_parent = element.get();
        element->m_subelements.push_back(std::move(child));
    }
    element->setTimelinesFromPlist(plist);
    return element;
}

// Stored directly, by the rules of the setters: a new element has nothing to undo.
void PCElement::setFromPlist(const QVariantMap& plist) {
    const QString identifierText = plist.value(u"layerIdentifier"_s).toString();
    if (!identifierText.isEmpty()) { m_identifier = Identifier(identifierText); }
    m_group = plist.value(u"layerIsGroup"_s).toBool();
    m_name = plist.value(u"layerName"_s).toString();
    m_scale = pointFrom(plist, u"layerScale"_s, {1, 1});
    m_hidden = plist.value(u"layerIsHidden"_s).toBool();
    m_locked = plist.value(u"layerIsLocked"_s).toBool();
    m_opacity = std::clamp(numberFrom(plist, u"layerOpacity"_s, 1), 0.0, 1.0);
    m_position = pointFrom(plist, u"layerPosition"_s, {0, 0});
    m_zRotation = storableRotation(numberFrom(plist, u"layerRotationZ"_s, 0));
    m_anchorPoint = pointFrom(plist, u"layerAnchorPoint"_s, {0.5, 0.5});
    m_expanded = plist.value(u"expanded"_s).toBool();
    m_scalesLocked = plist.value(u"scalesLocked"_s).toBool();
    m_imageName = plist.value(u"layerImageName"_s).toString();
    m_size = sizeFrom(plist, u"layerSize"_s);
    m_modified = true;
}

void PCElement::setTimelinesFromPlist(const QVariantMap& plist) {
    clearTimelines();
    for (const auto& [type, key] : kTimelineKeys) {
        const QString name = QString::fromLatin1(key);
        const QByteArray archive = plist.value(name).toByteArray();
        if (archive.isEmpty()) { continue; }
        const auto pasted = PCKeyedPropertyTimeline::unarchive(archive, u"pasteboard/"_s + name);
        if (pasted->propertyType() != type) {
            refuse(u"holds another property under %1"_s.arg(name));
        }
        pasted->setElement(shared_from_this());
        setTimeline(pasted);
    }
}

}  // namespace tweenery
