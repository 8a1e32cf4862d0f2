#pragma once

#include <functional>
#include <string_view>

#include "storage/keyed_archiver.h"

namespace tweenery::test {

/// An object of any class whose keys a function writes.
class Archived : public Archivable {
 public:
    using Encode = std::function<void(KeyedEncoder&)>;
    explicit Archived(Encode encode) : Archived("Thing", std::move(encode)) {}
    Archived(std::string_view className, Encode encode)
        : m_className(className), m_encode(std::move(encode)) {}
    ArchiveClass archiveClass() const override { return {m_className}; }
    void encodeWithCoder(KeyedEncoder& coder) const override { m_encode(coder); }
    QByteArray bytes() const { return KeyedArchiver::archivedDataWithRootObject(*this); }

 private:
    std::string_view m_className;
    Encode m_encode;
};

/// The `version` entry for a model version.
inline QByteArray versionArchive(int32_t version) {
    const auto encode = [version](KeyedEncoder& coder) {
        coder.encodeInt("modelVersion", version);
    };
    return Archived("PCProjectVersion", encode).bytes();
}

}  // namespace tweenery::test
