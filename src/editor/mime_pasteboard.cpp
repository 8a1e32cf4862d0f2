#include "editor/mime_pasteboard.h"

#include <QCborArray>
#include <QCborValue>
#include <QMap>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void MimePasteboard::write(const std::vector<PasteboardItem>& items) {
    QMap<QString, QCborArray> lists;
    for (const PasteboardItem& item : items) {
        lists[item.type].append(QCborValue::fromVariant(item.propertyList));
    }
    m_data.clear();
    for (auto list = lists.cbegin(); list != lists.cend(); ++list) {
        m_data.setData(list.key(), list.value().toCborValue().toCbor());
    }
}

QVariantList MimePasteboard::read(const QMimeData& data, const QString& type) {
    QCborParserError error;
    const QCborValue list = QCborValue::fromCbor(data.data(type), &error);
    return error.error == QCborError::NoError ? list.toArray().toVariantList() : QVariantList();
}

void ReceivedPasteboard::write(const std::vector<PasteboardItem>&) {
    failContract(u"what was received cannot be written"_s);
}

}  // namespace tweenery
