// Every --json is one document of one shape, whatever happens; docs/tweenc.md tells that shape.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QString typeOf(const QJsonValue& value) {
    switch (value.type()) {
        case QJsonValue::Null:
            return u"null"_s;
        case QJsonValue::Bool:
            return u"boolean"_s;
        case QJsonValue::Double:
            return u"number"_s;
        case QJsonValue::String:
            return u"string"_s;
        case QJsonValue::Array:
            return u"array"_s;
        default:
            return u"object"_s;
    }
}

QStringList typesOf(const QJsonValue& schema) {
    if (schema.isString()) { return {schema.toString()}; }
    QStringList types;
    for (const QJsonValue& type : schema.toArray()) {
        types << type.toString();
    }
    return types;
}

/// What of `value` is not as the JSON schema has it; knows the words that ours uses.
QStringList faultsOf(const QJsonValue& value, const QJsonObject& schema, const QString& path) {
    if (!typesOf(schema[u"type"_s]).contains(typeOf(value))) {
        return {path + u" is of type "_s + typeOf(value)};
    }
    QStringList faults;
    if (value.isArray() && schema.contains(u"items"_s)) {
        const QJsonArray items = value.toArray();
        for (qsizetype i = 0; i < items.size(); ++i) {
            faults +=
                faultsOf(items[i], schema[u"items"_s].toObject(), path + u'/' + QString::number(i));
        }
    }
    const QJsonObject properties = schema[u"properties"_s].toObject();
    if (!value.isObject() || properties.isEmpty()) { return faults; }
    const QJsonObject object = value.toObject();
    for (const QString& key : object.keys()) {
        if (!properties.contains(key)) { faults << path + u" has the key "_s + key; }
    }
    for (const QString& key : properties.keys()) {
        if (object.contains(key)) {
            faults += faultsOf(object[key], properties[key].toObject(), path + u'/' + key);
        } else {
            faults << path + u" lacks "_s + key;
        }
    }
    return faults;
}

QJsonObject schemas() {
    const QByteArray text = contentsOf(sourcePath(u"docs/tweenc-json.json"_s));
    return QJsonDocument::fromJson(text).object();
}

TEST(Json, IsOneDocumentOfTheShapeThatIsToldForEachVerb) {
    Workshop shop;
    const QString good = shop.copyOf(u"Tags"_s, u"Good.tweenery"_s);
    const QString bounce = shop.copyOf(u"Bounce"_s, u"Bounce.tweenery"_s);
    const QString bad = shop.copyOf(u"Card"_s, u"Bad.tweenery"_s);
    QFile::remove(bad + u"/canvas"_s);
    const QString gone = shop.path(u"Gone.tweenery"_s);
    const QString out = shop.path(u"out"_s);
    const QStringList many{good, bad, bounce, gone};
    struct Case {
        QString verb;
        QStringList packages;
        QStringList options;
    };
    const std::vector<Case> cases = {
        {u"info"_s, many, {}},
        {u"check"_s, many, {}},
        {u"export"_s, many, {u"--out"_s, out}},
        {u"certify"_s, {bounce}, {u"--lang=swift"_s}},
        {u"certify"_s, {bad}, {}},
        {u"describe"_s, {bounce}, {}},
        {u"describe"_s, {bad}, {}},
        {u"values"_s, {bounce}, {u"--at"_s, u"0,5"_s}},
        {u"values"_s, {gone}, {u"--at"_s, u"0"_s}},
        {u"render"_s, {bounce}, {u"--out"_s, shop.path(u"new/%d.png"_s)}},
        {u"render"_s, {bad}, {u"--sheet"_s, shop.path(u"s.png"_s)}},
        {u"render"_s,
         {bounce},
         {u"--animation"_s, u"Bounce"_s, u"--fps"_s, u"3"_s, u"--out"_s, shop.path(u"b.gif"_s)}},
    };
    const QJsonObject all = schemas();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.verb.toStdString());
        const Outcome run =
            tweenc(QStringList{c.verb} + c.packages + c.options + QStringList{u"--json"_s});
        QJsonParseError error;
        const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(run.out), &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError) << run.out;
        const QStringList faults = faultsOf(document.array(), all[c.verb].toObject(), QString());
        EXPECT_EQ(faults.join(u'\n').toStdString(), "");
        ASSERT_EQ(document.array().size(), c.packages.size());
        for (qsizetype i = 0; i < c.packages.size(); ++i) {
            const QJsonObject object = document.array()[i].toObject();
            EXPECT_EQ(object[u"package"_s].toString(), c.packages[i]);
            const bool isBad = c.packages[i] == bad || c.packages[i] == gone;
            EXPECT_EQ(object[u"errors"_s].toArray().isEmpty(), !isBad);
        }
        EXPECT_EQ(run.code, c.packages.contains(bad) || c.packages.contains(gone) ? 1 : 0);
    }
}

}  // namespace
}  // namespace tweenery::test
