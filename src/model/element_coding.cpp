// The stored form of the element tree.

#include "base/errors.h"
#include "model/element.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

std::vector<const Archivable*> archivables(const ElementList& elements) {
    std::vector<const Archivable*> objects;
    objects.reserve(elements.size());
    for (const PCElement::Ptr& element : elements) {
        objects.push_back(element.get());
    }
    return objects;
}

}  // namespace

void PCElement::encodeWithCoder(KeyedEncoder& coder) const {
    coder.encodeString("identifier", m_identifier.toString());
    coder.encodeString("name", m_name);
    coder.encodeFloat("xScale", static_cast<float>(m_scale.x()));
    coder.encodeFloat("yScale", static_cast<float>(m_scale.y()));
    coder.encodeBool("hidden", m_hidden);
    coder.encodeBool("locked", m_locked);
    coder.encodeFloat("opacity", static_cast<float>(m_opacity));
    coder.encodePoint("position", m_position);
    coder.encodeFloat("zRotation", static_cast<float>(m_zRotation));
    coder.encodePoint("anchorPoint", m_anchorPoint);
    coder.encodeSize("size", m_size);
    coder.encodeBool("expanded", m_expanded);
    coder.encodeBool("scalesLocked", m_scalesLocked);
    coder.encodeBool("group", m_group);
    coder.encodeString("imageName", m_imageName);
    coder.encodeObjects("subelements", archivables(m_subelements));
    coder.encodeObject("parentElement", parentElement());
    coder.encodeBool("scaleTimelineSplit", m_scaleTimelineSplit);
    coder.encodeBool("translationTimelineSplit", m_translationTimelineSplit);
}

PCElement::Ptr PCElement::initWithArchive(const KeyedUnarchiver& archive) {
    std::vector<bool> seen(archive.objectCount());
    return decodeTree(archive, archive.root(), 1, seen);
}

PCElement::Ptr PCElement::decodeTree(const KeyedUnarchiver& archive, const KeyedDecoder& coder,
                                     int depth, std::vector<bool>& seen) {
    if (coder.isNull()) { archive.fail(u"holds an empty place among its elements"_s); }
    coder.requireClass("PCElement");
    if (depth > kMaximumDepth) {
        archive.fail(u"nests its elements more than %1 levels deep"_s.arg(kMaximumDepth));
    }
    if (seen[coder.number()]) { archive.fail(u"holds an element in two places of the tree"_s); }
    seen[coder.number()] = true;

    Ptr element = init();
    element->setFromArchive(coder);
    const ArchivedArray items = coder.decodeArray("subelements");
    for (size_t i = 0; i < items.size(); ++i) {
        Ptr child = decodeTree(archive, items.object(i), depth + 1, seen);
        child->m_parent = element.get();
        element->m_subelements.push_back(std::move(child));
    }
    return element;
}

// By the rules of the setters: opacity and rotation come into range, and the element counts as
// modified. A missing identifier leaves the new one that it was made with.
void PCElement::setFromArchive(const KeyedDecoder& coder) {
    const QString identifierText = coder.decodeString("identifier");
    if (!identifierText.isEmpty()) { m_identifier = Identifier(identifierText); }
    m_group = coder.decodeBool("group");
    m_name = coder.decodeString("name");
    m_scale = {static_cast<double>(coder.decodeFloat("xScale")),
               static_cast<double>(coder.decodeFloat("yScale"))};
    m_hidden = coder.decodeBool("hidden");
    m_locked = coder.decodeBool("locked");
    m_opacity = static_cast<double>(std::clamp(coder.decodeFloat("opacity"), 0.0F, 1.0F));
    m_position = coder.decodePoint("position");
    m_zRotation = storableRotation(static_cast<double>(coder.decodeFloat("zRotation")));
    m_anchorPoint = coder.decodePoint("anchorPoint");
    m_expanded = coder.decodeBool("expanded");
    m_scalesLocked = coder.decodeBool("scalesLocked");
    m_imageName = coder.decodeString("imageName");
    m_size = coder.decodeSize("size");
    m_scaleTimelineSplit = coder.decodeBool("scaleTimelineSplit");
    m_translationTimelineSplit = coder.decodeBool("translationTimelineSplit");
    m_modified = true;
}

}  // namespace tweenery
