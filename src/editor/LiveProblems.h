#pragma once

#include "check/Diagnostic.h"
#include "check/LiveFindings.h"
#include "models/ProblemsModel.h"

#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

#include <optional>

namespace ProductEditor {

class RecordedFiles;
class VantixJsonData;

// Keeps a problems model up to date with the window's folder. The files are checked
// again after a load or a save, the records after edits have paused; each check runs
// on a pool thread over copies (the records share their data until the store writes),
// so the window goes on while it runs. A change during a run makes that run's result
// stale: it is dropped and one more run starts, so the newest request wins.
class LiveProblems : public QObject
{
    Q_OBJECT

public:
    LiveProblems(VantixJsonData &store, const RecordedFiles &files, QObject *parent = nullptr);
    ~LiveProblems() override;

    ProblemsModel *GetModel() { return &m_model; }

    // After a load, a reload or a save: the files are read again.
    void FilesChanged();
    // Before the files a save wrote into the loaded folder are read again: what it dropped
    // stays listed, marked, until the next load.
    void KeepSaveLosses();
    // A load or a reload: the files hold all there is to list.
    void ForgetSaveLosses() { m_dropped.clear(); }
    // After an edit: the records are checked once edits pause.
    void RecordsChanged();

signals:
    // The model holds the findings of the records as they are now.
    void Updated();
    // A check started (true) or the model is up to date (false).
    void Busy(bool busy);

private:
    void _Start();
    void _Finished();

    VantixJsonData &m_store;
    const RecordedFiles &m_files;
    ProblemsModel m_model;
    QTimer m_timer;
    QFutureWatcher<LiveFindings> m_watcher;
    QString m_folder;                      // of the running check
    std::optional<LiveFindings> m_last; // of the files as last checked
    Diagnostics m_dropped;              // by the saves since the last load
    bool m_filesChanged = true;
    bool m_pending = false; // something changed while a check ran
};

} // namespace ProductEditor
