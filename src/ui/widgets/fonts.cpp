#include "ui/widgets/fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

bool hasInstalledLightWeights(const QString& family) {
    const QStringList styles = QFontDatabase::styles(family);
    return std::any_of(styles.begin(), styles.end(), [&family](const QString& style) {
        return QFontDatabase::weight(family, style) <= QFont::Light;
    });
}

QFont fontOfWeight(int size, QFont::Weight weight) {
    QFont font(windowTypeface());
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}

// Calls `use(piece, width)` for each digit by itself and for what stands between digits.
template <class Use>
void forEachTabularPiece(const QFontMetricsF& metrics, const QString& text, Use use) {
    const double digitWidth = widestDigit(metrics);
    for (qsizetype i = 0; i < text.size();) {
        if (text[i].isDigit()) {
            use(text.mid(i, 1), digitWidth);
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && !text[end].isDigit()) {
            ++end;
        }
        const QString piece = text.mid(i, end - i);
        use(piece, metrics.horizontalAdvance(piece));
        i = end;
    }
}

}  // namespace

QString bestTypeface(const QStringList& installed,
                     const std::function<bool(const QString&)>& hasLightWeights) {
    static const QStringList wanted = {u"Inter"_s,     u"Roboto"_s, u"Noto Sans"_s,
                                       u"Open Sans"_s, u"Lato"_s,   u"Cantarell"_s};
    for (const QString& family : wanted) {
        if (installed.contains(family) && hasLightWeights(family)) { return family; }
    }
    return {};
}

QString windowTypeface() {
    static const QString typeface = [] {
        const QString best = bestTypeface(QFontDatabase::families(), hasInstalledLightWeights);
        return best.isEmpty() ? QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()
                              : best;
    }();
    return typeface;
}

QFont thinFont(int size, double devicePixelRatio) {
    return fontOfWeight(size, devicePixelRatio < 1.5 ? QFont::Light : QFont::ExtraLight);
}

QFont lightFont(int size) {
    return fontOfWeight(size, QFont::Light);
}

QFont regularFont(int size) {
    return fontOfWeight(size, QFont::Normal);
}

QFont mediumFont(int size) {
    return fontOfWeight(size, QFont::Medium);
}

QFont boldFont(int size) {
    return fontOfWeight(size, QFont::Bold);
}

QFont frameFont() {
    return regularFont(sizes::frameTextSize);
}

QFont headingFont() {
    return fontOfWeight(sizes::headingTextSize, QFont::DemiBold);
}

QFont rowFont(double devicePixelRatio, bool increasesContrast) {
    return increasesContrast ? regularFont(sizes::rowTextSize)
                             : thinFont(sizes::rowTextSize, devicePixelRatio);
}

double tabularWidth(const QFont& font, const QString& text) {
    double width = 0;
    forEachTabularPiece(QFontMetricsF(font), text,
                        [&width](const QString&, double advance) { width += advance; });
    return width;
}

void drawTabularText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                     const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const double width = tabularWidth(painter.font(), text);
    double x = rect.left();
    if (alignment & Qt::AlignRight) { x = rect.right() - width; }
    if (alignment & Qt::AlignHCenter) { x = rect.center().x() - width / 2; }
    double baseline = rect.top() + metrics.ascent();
    if (alignment & Qt::AlignBottom) { baseline = rect.bottom() - metrics.descent(); }
    if (alignment & Qt::AlignVCenter) {
        baseline = rect.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    }
    forEachTabularPiece(metrics, text, [&](const QString& piece, double advance) {
        const double slack = advance - metrics.horizontalAdvance(piece);
        painter.drawText(QPointF(x + slack / 2, baseline), piece);
        x += advance;
    });
}

}  // namespace tweenery
