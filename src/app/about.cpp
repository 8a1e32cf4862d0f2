#include "app/about.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QUrl>

#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kPicture = 96;
constexpr int kNameSize = 22;
constexpr int kWidth = 360;
constexpr int kLevelsAboveProgram = 3;
const QString kInstalledGuide = u"/../share/doc/tweenery/guide/index.html"_s;
const QString kGuideOfSource = u"/docs/guide/index.html"_s;

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
    const QString program = QCoreApplication::applicationDirPath();
    QStringList places{program + kInstalledGuide};
    QString folder = program;
    for (int level = 0; level < kLevelsAboveProgram; ++level) {
        folder += u"/.."_s;
        places << folder + kGuideOfSource;
    }
    for (const QString& place : places) {
        if (QFile::exists(place)) {
            return QUrl::fromLocalFile(QDir::cleanPath(place)).toString(QUrl::FullyEncoded);
        }
    }
    return {};
}

}  // namespace tweenery
