#pragma once

#include "ProductEditorExport.h"
#include "merge/JsonMerge.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

namespace ProductEditor {

// Labels and marker size of the conflict blocks, as git writes them with the diff3 style.
struct PRODUCT_EDITOR_EXPORT ConflictMarkers
{
    QString oursLabel;
    QString baseLabel;
    QString theirsLabel;
    int size = 7;

    // `document` written as a save writes it, with each conflict's place replaced by a
    // block that holds each side's member (or elements) in the same formatting.
    QByteArray Write(const QJsonObject &document, const QVector<JsonMergeConflict> &conflicts) const;

private:
    void _WriteBlock(QByteArray &bytes, const QVector<const JsonMergeConflict *> &run, const QByteArray &last) const;
};

} // namespace ProductEditor
