#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <cstddef>
#include <optional>
#include <vector>

namespace tweenery {

/// How an element looks: what the preview or a played export shows of it. Points, radians, and the
/// file name of the image.
struct ElementLook {
    double x = 0;  // of the anchor point in the parent
    double y = 0;
    double scaleX = 1;
    double scaleY = 1;
    double rotation = 0;
    double opacity = 1;
    QString image;
};

/// Where an element was put by an export.
struct ElementPlace {
    static constexpr int kScene = -1;
    static constexpr int kElsewhere = -2;

    int parent = kElsewhere;          // its number, or one of those
    double anchorX = 0, anchorY = 0;  // in shares of the size
    double width = 0, height = 0;
};

/// What the simulator is to do with an export: lines, each with an answer. Elements are known by
/// numbers, which they get in the order in which they are added.
class PlayerScript {
 public:
    /// The number of a line's answer.
    using Line = size_t;

    void addElement(const QString& name, bool isLayer);
    Line makeView(const QString& className);
    Line scene();
    /// `arguments` as the player has them: "d0.5", "sboth", "b1", "c", ...
    Line call(const QString& selector, const QByteArrayList& arguments = {});
    /// Times are seconds of the player's clock.
    Line look(double seconds, int element);
    Line order(double seconds, int parent);
    Line clock(double seconds);
    Line animations();
    Line resize(double width, double height);

    const QByteArray& text() const { return m_text; }
    size_t lineCount() const { return m_lineCount; }

 private:
    QByteArray m_text;
    size_t m_lineCount = 0;

    Line add(const QByteArray& line);
};

/// The answers to a script. Each is asked for as what it is; one that the export stopped at, or
/// never came to, is nothing.
class PlayerAnswers {
 public:
    explicit PlayerAnswers(const QByteArray& text);

    size_t count() const { return m_starts.size() - 1; }
    /// Why the call did not come to its end on this line; empty when it did.
    QString whyStopped(PlayerScript::Line line) const;
    /// Nothing for an element that the export does not have.
    std::optional<ElementLook> look(PlayerScript::Line line) const;
    /// By element.
    std::vector<std::optional<ElementPlace>> places(PlayerScript::Line line) const;
    /// Elements back to front; -1 for what is none.
    std::vector<int> order(PlayerScript::Line line) const;
    /// How often the block was called, and how often of these with "finished".
    std::pair<int, int> completions(PlayerScript::Line line) const;
    int animations(PlayerScript::Line line) const;
    struct Fit {
        double x = 0, y = 0, scaleX = 0, scaleY = 0;
    };
    Fit fit(PlayerScript::Line line) const;

 private:
    QByteArray m_text;
    std::vector<qsizetype> m_starts;  // of the answers, and the end of the last

    QList<QByteArray> words(PlayerScript::Line line, const char* kind) const;
    QByteArray answer(PlayerScript::Line line) const;
};

}  // namespace tweenery
