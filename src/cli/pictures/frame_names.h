#pragma once

#include <QString>
#include <vector>

namespace tweenery {

/// The paths of a run's pictures, made from one pattern: %d stands for the number of the frame,
/// from 0 (%04d with at least four digits), %t for its time in milliseconds, %a for the name of its
/// animation, %% for a percent sign.
class FrameNames {
 public:
    /// Throws UsageError when the pattern has other placeholders, or the ending of no picture that
    /// can be made.
    explicit FrameNames(const QString& pattern);

    /// The frames of one animation get names of their own.
    bool tellsFramesApart() const;

    /// The path of a frame. `name` must be fit for a file.
    QString pathOf(size_t number, int32_t timeInMS, const QString& name) const;

 private:
    struct Piece {
        QString text;       // before the placeholder
        QChar placeholder;  // null for none
        qsizetype fewestDigits = 0;
    };
    std::vector<Piece> m_pieces;
};

/// `name` as far as it is fit for a part of a file's name: no separators, nothing that does not
/// show, no dot or dash in front, at most 80 characters.
QString nameForFile(const QString& name);

}  // namespace tweenery
