#pragma once

#include <QString>
#include <QStringList>

// The command `word` was most likely meant to be: the nearest of `commands` by edit
// distance, when it is at most 2 and at most half the word; empty otherwise.
QString NearestCommand(const QString &word, const QStringList &commands);
