#include "base/identifier.h"

#include <gtest/gtest.h>

#include <unordered_set>
#include <vector>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const std::vector<QString> Texts = {
    u""_s,
    u"00000000-0000-0000-0000-000000000000"_s,
    u"00000000-0000-0000-0000-000000000001"_s,
    u"6E5DD218-3E41-4086-8EB9-22670A476421"_s,
    u"6E5DD218-3E41-4086-0000-000000000000"_s,
    u"FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"_s,
    u"6e5dd218-3e41-4086-8eb9-22670a476421"_s,
    u"6E5DD2183E41-4086-8EB9-22670A4764210-"_s,
    u"6E5DD218-3E41-4086-8EB9-22670A47642G"_s,
    u"6E5DD218-3E41-4086-8EB9-22670A47642"_s + QChar(0x0141),
    u"{6E5DD218-3E41-4086-8EB9-22670A476421}"_s,
    u"element 7"_s,
};

TEST(Identifier, KeepsEveryTextThroughCopies) {
    for (const QString& text : Texts) {
        const Identifier original(text);
        Identifier copy = original;
        const Identifier moved = std::move(copy);
        copy = moved;
        EXPECT_EQ(original.toString(), text);
        EXPECT_EQ(moved.toString(), text);
        EXPECT_EQ(copy, original);
        EXPECT_EQ(Identifier(QStringView(text)), original);
        EXPECT_EQ(original.isNull(), text.isEmpty());
        if (const auto uuid = original.uuidText()) {
            EXPECT_EQ(QString::fromLatin1(uuid->data(), uuid->size()), text);
            EXPECT_EQ(Identifier::fromAscii({uuid->data(), uuid->size()}), original);
        }
    }
    EXPECT_EQ(Identifier::fromAscii("element 7").toString(), u"element 7"_s);
    EXPECT_EQ(Identifier::fromAscii("6E5DD218-3E41-4086-0000-000000000000").toString(), Texts[4]);
}

TEST(Identifier, ComparesAsItsText) {
    for (const QString& left : Texts) {
        for (const QString& right : Texts) {
            EXPECT_EQ(Identifier(left) == Identifier(right), left == right);
            EXPECT_EQ(Identifier(left) < Identifier(right), left < right)
                << left.toStdString() << " < " << right.toStdString();
        }
    }
    std::unordered_set<Identifier> set;
    for (int round = 0; round < 2; ++round) {
        for (const QString& text : Texts) {
            set.insert(Identifier(text));
        }
    }
    EXPECT_EQ(set.size(), Texts.size());
}

TEST(Identifier, GeneratesRandomUuidsOfVersionFour) {
    std::unordered_set<Identifier> seen;
    for (int i = 0; i < 1000; ++i) {
        const Identifier id = Identifier::generate();
        const QString text = id.toString();
        ASSERT_TRUE(id.uuidText().has_value());
        ASSERT_EQ(text[14], u'4');
        ASSERT_TRUE(u"89AB"_s.contains(text[19])) << text.toStdString();
        ASSERT_TRUE(seen.insert(id).second);
    }
}

}  // namespace
}  // namespace tweenery::test
