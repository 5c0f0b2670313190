#pragma once

#include "store/VantixJsonData.h"

#include <QStringList>

// The commands of the command-line mode. Each takes the arguments that follow its
// name and the reader every file is read through, and returns the exit status.
int RunCheck(const QStringList &args, const ProductEditor::Reader &reader);
int RunNormalize(const QStringList &args, const ProductEditor::Reader &reader);
int RunDiff(const QStringList &args, const ProductEditor::Reader &reader);
int RunCompareProducts(const QStringList &args, const ProductEditor::Reader &reader);
int RunQuery(const QStringList &args, const ProductEditor::Reader &reader);
int RunMergeFile(const QStringList &args, const ProductEditor::Reader &reader);
int RunGitSetup(const QStringList &args, const ProductEditor::Reader &reader);
int RunResolve(const QStringList &args, const ProductEditor::Reader &reader);
int RunMergeFolders(const QStringList &args, const ProductEditor::Reader &reader);
