#pragma once

#include "json/QJsonModel.h"

#include <QJsonDocument>

class QIODevice;

namespace ProductEditor {

// A JSON tree model that reads its document from bytes, a file or a device and writes it back.
class PRODUCT_EDITOR_EXPORT QSmartJsonModel : public QJsonModel
{
    Q_OBJECT

public:
    explicit QSmartJsonModel(const QByteArray &json, QObject *parent = nullptr);
    explicit QSmartJsonModel(const QString &fileName, QObject *parent = nullptr);
    explicit QSmartJsonModel(QIODevice *device, QObject *parent = nullptr);

    bool loadJson(const QByteArray &json);
    bool load(const QString &fileName);
    bool load(QIODevice *device);
    QJsonDocument json() const;
};

} // namespace ProductEditor
