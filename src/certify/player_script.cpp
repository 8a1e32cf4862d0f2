#include "certify/player_script.h"

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

QByteArray number(double value) {
    return QByteArray::fromStdString(shortestText(value));
}

// Texts have an x in front, so that an empty one is a word too.
QByteArray word(const QString& text) {
    return 'x' + text.toUtf8().toHex();
}
QString textOf(const QByteArray& word) {
    return QString::fromUtf8(QByteArray::fromHex(word.mid(1)));
}

}  // namespace

PlayerScript::Line PlayerScript::add(const QByteArray& line) {
    m_text += line;
    m_text += '\n';
    return m_lineCount++;
}

void PlayerScript::addElement(const QString& name, bool isLayer) {
    add("element " + word(name) + (isLayer ? " L" : " V"));
}

PlayerScript::Line PlayerScript::makeView(const QString& className) {
    return add("view " + word(className));
}

PlayerScript::Line PlayerScript::scene() {
    return add("scene");
}

PlayerScript::Line PlayerScript::call(const QString& selector, const QByteArrayList& arguments) {
    QByteArrayList words{"call", word(selector)};
    return add((words + arguments).join(' '));
}

PlayerScript::Line PlayerScript::look(double seconds, int element) {
    return add("look " + number(seconds) + ' ' + QByteArray::number(element));
}

PlayerScript::Line PlayerScript::order(double seconds, int parent) {
    return add("order " + number(seconds) + ' ' + QByteArray::number(parent));
}

PlayerScript::Line PlayerScript::clock(double seconds) {
    return add("clock " + number(seconds));
}

PlayerScript::Line PlayerScript::animations() {
    return add("animations");
}

PlayerScript::Line PlayerScript::resize(double width, double height) {
    return add("resize " + number(width) + ' ' + number(height));
}

// Each answer ends with a line that is a point alone.
PlayerAnswers::PlayerAnswers(const QByteArray& text) : m_text('\n' + text), m_starts{1} {
    const QByteArray end = "\n.\n";
    qsizetype at = 0;
    while ((at = m_text.indexOf(end, m_starts.back() - 1)) >= 0) {
        m_starts.push_back(at + end.size());
    }
}

QByteArray PlayerAnswers::answer(PlayerScript::Line line) const {
    if (line >= count()) { return {}; }
    // Two bytes less than the end, of which an empty answer shares the line break before it.
    return m_text.mid(m_starts[line], m_starts[line + 1] - m_starts[line] - 3).trimmed();
}

QList<QByteArray> PlayerAnswers::words(PlayerScript::Line line, const char* kind) const {
    const QList<QByteArray> all = answer(line).split(' ');
    return all.first() == kind ? all : QList<QByteArray>();
}

QString PlayerAnswers::whyStopped(PlayerScript::Line line) const {
    if (line >= count()) { return u"it ended before its time"_s; }
    const QList<QByteArray> stopped = words(line, "stopped");
    return stopped.isEmpty() ? QString() : textOf(stopped[1]);
}

std::optional<ElementLook> PlayerAnswers::look(PlayerScript::Line line) const {
    const QList<QByteArray> found = words(line, "shown");
    if (found.size() != 9) { return {}; }
    const auto real = [&](qsizetype i) { return found[i].toDouble(); };
    return ElementLook{real(2), real(3), real(4), real(5), real(6), real(7), textOf(found[8])};
}

std::vector<std::optional<ElementPlace>> PlayerAnswers::places(PlayerScript::Line line) const {
    std::vector<std::optional<ElementPlace>> places;
    for (const QByteArray& text : answer(line).split('\n')) {
        const QList<QByteArray> found = text.split(' ');
        if (found.first() == "none") { places.emplace_back(); }
        if (found.first() != "setup" || found.size() != 7) { continue; }
        places.emplace_back(ElementPlace{found[2].toInt(), found[3].toDouble(), found[4].toDouble(),
                                         found[5].toDouble(), found[6].toDouble()});
    }
    return places;
}

std::vector<int> PlayerAnswers::order(PlayerScript::Line line) const {
    std::vector<int> order;
    for (const QByteArray& word : words(line, "order").mid(1)) {
        order.push_back(word.toInt());
    }
    return order;
}

std::pair<int, int> PlayerAnswers::completions(PlayerScript::Line line) const {
    const QList<QByteArray> found = words(line, "completions");
    return found.size() == 3 ? std::pair(found[1].toInt(), found[2].toInt()) : std::pair(-1, -1);
}

int PlayerAnswers::animations(PlayerScript::Line line) const {
    const QList<QByteArray> found = words(line, "animations");
    return found.size() == 2 ? found[1].toInt() : -1;
}

PlayerAnswers::Fit PlayerAnswers::fit(PlayerScript::Line line) const {
    const QList<QByteArray> found = words(line, "fit");
    if (found.size() != 5) { return {}; }
    return {found[1].toDouble(), found[2].toDouble(), found[3].toDouble(), found[4].toDouble()};
}

}  // namespace tweenery
