#pragma once

#include <QMimeData>

#include "base/ports.h"

namespace tweenery {

/// A pasteboard in the form in which the desktop carries things between windows and programs: under
/// each type's name the list of its property lists, as CBOR (RFC 8949). The same for the clipboard
/// and for drags. What is no such list reads as empty.
class MimePasteboard : public PasteboardPort {
 public:
    /// Not owned.
    explicit MimePasteboard(QMimeData& data) : m_data(data) {}

    void write(const std::vector<PasteboardItem>& items) override;
    QVariantList read(const QString& type) const override { return read(m_data, type); }

    static QVariantList read(const QMimeData& data, const QString& type);

 private:
    QMimeData& m_data;
};

/// The same for reading only, as what comes by a drop.
class ReceivedPasteboard : public PasteboardPort {
 public:
    /// Not owned.
    explicit ReceivedPasteboard(const QMimeData& data) : m_data(data) {}

    /// Throws AssertionFailure.
    void write(const std::vector<PasteboardItem>& items) override;
    QVariantList read(const QString& type) const override {
        return MimePasteboard::read(m_data, type);
    }

 private:
    const QMimeData& m_data;
};

}  // namespace tweenery
