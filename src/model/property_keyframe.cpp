#include "model/property_keyframe.h"

#include "base/errors.h"
#include "model/properties/easing.h"

using namespace Qt::StringLiterals;

namespace tweenery {

std::shared_ptr<PCPropertyKeyframe> PCPropertyKeyframe::initWithPropertyTimeline(
    const std::shared_ptr<KeyframeStore>& timeline) {
    KeyframeRecord record;
    record.identifier = Identifier::generate();
    return initWithRecord(timeline, std::move(record));
}

std::shared_ptr<PCPropertyKeyframe> PCPropertyKeyframe::initWithRecord(
    const std::shared_ptr<KeyframeStore>& timeline, KeyframeRecord record) {
    std::shared_ptr<PCPropertyKeyframe> keyframe(new PCPropertyKeyframe);
    keyframe->m_store = timeline;
    keyframe->m_record = std::move(record);
    return keyframe;
}

PCPropertyKeyframe::~PCPropertyKeyframe() {
    if (m_owner) { m_owner->forgetHandle(m_index); }
}

std::shared_ptr<PCKeyedPropertyTimeline> PCPropertyKeyframe::timeline() const {
    const auto store = m_store.lock();
    return store ? store->timeline() : nullptr;
}

size_t PCPropertyKeyframe::index() const {
    assertContract(m_owner != nullptr, u"a keyframe outside of a timeline has no index"_s);
    return m_index;
}

std::shared_ptr<PCPropertyKeyframe> PCPropertyKeyframe::nextKeyframe() const {
    const auto owner = m_store.lock();
    if (!owner || timeInMS() == INT32_MAX) { return nullptr; }
    return owner->keyframeAtOrAfterTimeInMS(timeInMS() + 1);
}

std::shared_ptr<PCPropertyKeyframe> PCPropertyKeyframe::prevKeyframe() const {
    const auto owner = m_store.lock();
    if (!owner || timeInMS() == INT32_MIN) { return nullptr; }
    return owner->keyframeAtOrBeforeTimeInMS(timeInMS() - 1);
}

const Identifier& PCPropertyKeyframe::identifier() const {
    return m_owner ? m_owner->identifierOfKeyframe(m_index) : m_record.identifier;
}

int32_t PCPropertyKeyframe::timeInMS() const {
    return m_owner ? m_owner->timeOfKeyframe(m_index) : m_record.timeInMS;
}

bool PCPropertyKeyframe::instantTransition() const {
    return record().instantTransition;
}
PCEasingMode PCPropertyKeyframe::easingMode() const {
    return record().easingMode;
}
bool PCPropertyKeyframe::keyall() const {
    return record().keyall;
}
bool PCPropertyKeyframe::liveRecorded() const {
    return record().liveRecorded;
}
bool PCPropertyKeyframe::liveRecordedStart() const {
    return record().liveRecordedStart;
}
bool PCPropertyKeyframe::liveRecordedEnd() const {
    return record().liveRecordedEnd;
}
PropertyValue PCPropertyKeyframe::propertyValue() const {
    return record().value;
}

KeyframeRecord PCPropertyKeyframe::record() const {
    return m_owner ? m_owner->recordOfKeyframe(m_index) : m_record;
}

template <typename Change>
void PCPropertyKeyframe::change(Change changeRecord) {
    if (!m_owner) {
        changeRecord(m_record);
        return;
    }
    KeyframeRecord changed = m_owner->recordOfKeyframe(m_index);
    changeRecord(changed);
    m_owner->rewriteKeyframe(m_index, changed);
}

void PCPropertyKeyframe::setInstantTransition(bool instant) {
    registerUndo([self = shared_from_this(), old = instantTransition()] {
        self->setInstantTransition(old);
    });
    change([instant](KeyframeRecord& record) { record.instantTransition = instant; });
    reportChange();
}

void PCPropertyKeyframe::setEasingMode(PCEasingMode mode) {
    registerUndo([self = shared_from_this(), old = easingMode()] { self->setEasingMode(old); });
    change([mode](KeyframeRecord& record) { record.easingMode = packedEasingMode(mode); });
    reportChange();
}

void PCPropertyKeyframe::setTimeInMS(int32_t timeInMS) {
    change([timeInMS](KeyframeRecord& record) { record.timeInMS = timeInMS; });
    if (!std::holds_alternative<std::monostate>(propertyValue())) { reportChange(); }
}

void PCPropertyKeyframe::setKeyall(bool keyall) {
    change([keyall](KeyframeRecord& record) { record.keyall = keyall; });
}
void PCPropertyKeyframe::setLiveRecorded(bool recorded) {
    change([recorded](KeyframeRecord& record) { record.liveRecorded = recorded; });
}
void PCPropertyKeyframe::setLiveRecordedStart(bool start) {
    change([start](KeyframeRecord& record) { record.liveRecordedStart = start; });
}
void PCPropertyKeyframe::setLiveRecordedEnd(bool end) {
    change([end](KeyframeRecord& record) { record.liveRecordedEnd = end; });
}

void PCPropertyKeyframe::setPropertyValue(const PropertyValue& value) {
    change([&value](KeyframeRecord& record) { record.value = value; });
}

void PCPropertyKeyframe::setReportedValue(const PropertyValue& value) {
    setPropertyValue(value);
    reportChange();
}

void PCPropertyKeyframe::reportChange() {
    if (m_owner) { m_owner->didChange(); }
}

void PCPropertyKeyframe::registerUndo(UndoAction inverse) {
    if (const auto owner = m_store.lock()) { owner->registerUndoOfKeyframe(std::move(inverse)); }
}

bool PCPropertyKeyframe::valueIsEqualToKeyframeValue(const PCPropertyKeyframe& other) const {
    const auto ours = m_store.lock();
    const auto theirs = other.m_store.lock();
    if (!ours || !theirs || ours->propertyType() != theirs->propertyType()) { return false; }
    if (ours->propertyType() >= PCPropertyTypeZPosition) { return false; }
    return valuesEqual(propertyValue(), other.propertyValue());
}

QString PCPropertyKeyframe::description() const {
    const KeyframeRecord fields = record();
    return u"<%1%2%3|%4>"_s.arg(QString::number(fields.timeInMS),
                                fields.instantTransition ? u"(INSTANT)"_s : QString(),
                                easingSuffix(fields.easingMode), describeValue(fields.value));
}

PCEasingMode packedEasingMode(PCEasingMode mode) {
    return static_cast<PCEasingMode>(std::clamp<int64_t>(mode, INT16_MIN, INT16_MAX));
}

QString easingSuffix(PCEasingMode mode) {
    const QString name = stringFromEasingMode(mode);
    return name == u"linear"_s ? QString() : u"(%1)"_s.arg(name);
}

}  // namespace tweenery
