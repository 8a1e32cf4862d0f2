#include "model/preferences/project_version.h"

namespace tweenery {

std::shared_ptr<PCProjectVersion> PCProjectVersion::decode(const KeyedDecoder& coder) {
    auto version = std::make_shared<PCProjectVersion>();
    coder.requireClass(version->archiveClass().name);
    version->m_modelVersion = coder.decodeInt("modelVersion");
    version->m_modified = true;
    return version;
}

void PCProjectVersion::setModelVersion(int32_t version) {
    if (m_modelVersion == version) { return; }
    m_modelVersion = version;
    m_modified = true;
}

QString PCProjectVersion::debugDescription() const {
    return QStringLiteral("PCProjectVersion.modelVersion : %1").arg(m_modelVersion);
}

void PCProjectVersion::encodeWithCoder(KeyedEncoder& coder) const {
    coder.encodeInt("modelVersion", m_modelVersion);
}

}  // namespace tweenery
