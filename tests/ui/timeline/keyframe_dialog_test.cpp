#include "ui/timeline/keyframe_dialog.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

TEST(KeyframeDialog, StaysAndSaysWhyUntilWhatIsTypedFits) {
    QStringList taken;
    KeyframeDialog dialog(
        u"Ball, Opacity"_s, {{u"Time"_s, u"500 ms"_s}, {u"Value"_s, u"50%"_s}},
        [&taken](const QStringList& texts) {
            taken = texts;
            return texts[0] == u"0 ms" ? QString() : u"There is a keyframe already."_s;
        },
        nullptr);
    dialog.show();
    const auto fields = dialog.findChildren<QLineEdit*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[1]->accessibleName(), u"Value");
    QPushButton* ok = nullptr;
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->isDefault()) { ok = button; }
    }
    ASSERT_TRUE(ok);
    const auto refusalShows = [&dialog] {
        const auto labels = dialog.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->isVisible() && label->text() == u"There is a keyframe already.";
        });
    };
    EXPECT_FALSE(refusalShows());
    ok->click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(refusalShows());
    fields[0]->setText(u"0 ms"_s);
    ok->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(taken, (QStringList{u"0 ms"_s, u"50%"_s}));
}

}  // namespace
}  // namespace tweenery::test
