#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "storage/keyed_archiver.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery {

/// The record of the model version that a project is stored in.
class PCProjectVersion : public Archivable {
 public:
    /// The version that this program writes. A higher one is refused, a lower one updated.
    static constexpr int32_t currentModelVersion = 14;

    /// Reads a stored record, which counts as modified. Throws InputError.
    static std::shared_ptr<PCProjectVersion> decode(const KeyedDecoder& coder);

    /// True when a save has to write the record; only a save clears it.
    bool modified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    int32_t modelVersion() const { return m_modelVersion; }
    /// Sets `modified` when the value changes.
    void setModelVersion(int32_t version);

    QString debugDescription() const;

    ArchiveClass archiveClass() const override { return {"PCProjectVersion"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override;

 private:
    bool m_modified = false;
    int32_t m_modelVersion = 0;
};

}  // namespace tweenery
