#include "json/QSmartJsonModel.h"

#include "json/QJsonTreeItem.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

QSmartJsonModel::QSmartJsonModel(const QByteArray &json, QObject *parent)
    : QJsonModel(parent)
{
    loadJson(json);
}

QSmartJsonModel::QSmartJsonModel(const QString &fileName, QObject *parent)
    : QJsonModel(parent)
{
    load(fileName);
}

QSmartJsonModel::QSmartJsonModel(QIODevice *device, QObject *parent)
    : QJsonModel(parent)
{
    load(device);
}

bool QSmartJsonModel::loadJson(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isNull()) {
        qDebug() << Q_FUNC_INFO << "cannot load json";
        return false;
    }
    beginResetModel();
    delete m_root;
    if (document.isArray()) {
        m_root = QJsonTreeItem::load(QJsonValue(document.array()), nullptr);
        m_root->setType(QJsonValue::Array);
    } else {
        m_root = QJsonTreeItem::load(QJsonValue(document.object()), nullptr);
        m_root->setType(QJsonValue::Object);
    }
    endResetModel();
    return true;
}

bool QSmartJsonModel::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const bool result = loadJson(file.readAll());
    file.close();
    return result;
}

bool QSmartJsonModel::load(QIODevice *device)
{
    return device && loadJson(device->readAll());
}

QJsonDocument QSmartJsonModel::json() const
{
    const QJsonValue value = _ToJson(m_root);
    if (value.isObject())
        return QJsonDocument(value.toObject());
    return QJsonDocument(value.toArray());
}

} // namespace ProductEditor
