#include "app/about.h"

#include <QBoxLayout>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QUrl>

#include "base/program_files.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kPicture = 96;
constexpr int kNameSize = 22;
constexpr int kWidth = 360;

QLabel* addLine(QBoxLayout& layout, const QString& text, const QFont& font) {
    auto* label = new QLabel(text);
    label->setFont(font);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout.addWidget(label);
    return label;
}

}  // namespace

void showAbout(QWidget* parent) {
    auto* dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(u"About Tweenery"_s);
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(sizes::dialogMargin, sizes::dialogMargin, sizes::dialogMargin,
                               sizes::dialogMargin);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    QLabel* picture = addLine(*layout, {}, frameFont());
    picture->setPixmap(applicationIcon().pixmap({kPicture, kPicture}, dialog->devicePixelRatioF()));
    picture->setAccessibleName(u"Tweenery's icon"_s);
    picture->setMinimumWidth(kWidth);
    addLine(*layout, u"Tweenery"_s, boldFont(kNameSize));
    addLine(*layout, u"Version "_s + QStringLiteral(TWEENERY_VERSION), frameFont());
    addLine(*layout, u"Animation design for interface designers"_s, frameFont());
    layout->addSpacing(sizes::dialogMargin);
    addLine(*layout,
            u"Tweenery is free software under the MIT License.\n"
            "It is built on Qt %1 (GNU LGPL 3), and shows its texts in Inter (SIL Open Font "
            "License 1.1) where that is installed."_s.arg(QString::fromLatin1(qVersion())),
            regularFont(sizes::captionTextSize));
    layout->addSpacing(sizes::dialogMargin);

    auto* close = new QPushButton(u"Close"_s, dialog);
    close->setDefault(true);
    QObject::connect(close, &QPushButton::clicked, dialog, &QDialog::accept);
    layout->addWidget(close, 0, Qt::AlignHCenter);
    dialog->open();
}

QString helpUrl() {
    const QString guide =
        programFile(u"doc/tweenery/guide/index.html"_s, u"docs/guide/index.html"_s);
    if (guide.isEmpty()) { return {}; }
    return QUrl::fromLocalFile(guide).toString(QUrl::FullyEncoded);
}

}  // namespace tweenery
