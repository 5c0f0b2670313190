#pragma once

#include "ScannedDocument.h"

#include "store/LoadReport.h"

#include <QString>
#include <QVector>

// What the loader quietly leaves out of the "layouts" folder: files it skips or that
// hold no "layouts" key (PE011), and entries that are not regular files (PE012).
Diagnostics CheckLayoutFolder(const QString &layoutsFolder, const ProductEditor::LoadReport &report,
                              const QVector<const ScannedDocument *> &loaded);
