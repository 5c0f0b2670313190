#include "editor/LiveProblems.h"

#include "check/RecordedFiles.h"
#include "check/SaveLosses.h"
#include "store/RecordsSnapshot.h"
#include "store/VantixJsonData.h"

#include <QtConcurrent>

#include <algorithm>

namespace ProductEditor {

namespace {

// Long enough to let a run of keystrokes in a field end first.
constexpr int kEditPause = 300;

} // namespace

LiveProblems::LiveProblems(VantixJsonData &store, const RecordedFiles &files, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_files(files)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LiveProblems::_Start);
    connect(&m_watcher, &QFutureWatcher<LiveFindings>::finished, this, &LiveProblems::_Finished);
}

LiveProblems::~LiveProblems()
{
    m_watcher.disconnect(this);
    m_watcher.waitForFinished();
}

void LiveProblems::FilesChanged()
{
    m_filesChanged = true;
    if (m_watcher.isRunning())
        m_pending = true;
    else
        m_timer.start(0);
}

// Each edit puts the check off again, unless a check of the files is already due.
void LiveProblems::RecordsChanged()
{
    if (m_watcher.isRunning())
        m_pending = true;
    else if (!(m_filesChanged && m_timer.isActive()))
        m_timer.start(kEditPause);
}

void LiveProblems::KeepSaveLosses()
{
    // A second save before the first one's files were checked again finds the same rows.
    const auto kept = [this](const Diagnostic &problem) {
        return std::any_of(m_dropped.cbegin(), m_dropped.cend(), [&problem](const Diagnostic &dropped) {
            return dropped.file == problem.file && dropped.line == problem.line && dropped.column == problem.column
                   && dropped.code == problem.code;
        });
    };
    for (Diagnostic problem : m_model.GetDiagnostics()) {
        if (!IsSaveLoss(problem) || kept(problem))
            continue;
        problem.droppedBySave = true;
        m_dropped << problem;
    }
}

void LiveProblems::_Start()
{
    if (m_watcher.isRunning()) {
        m_pending = true;
        return;
    }
    m_folder = m_store.GetFolder().path();
    std::optional<LiveFindings> previous;
    if (!m_filesChanged)
        previous = m_last;
    m_filesChanged = false;
    emit Busy(true);
    m_watcher.setFuture(QtConcurrent::run([reader = m_files.Memory(), folder = m_folder,
                                           records = RecordsSnapshot::Take(m_store),
                                           layoutFiles = m_store.GetLayoutFiles(), previous] {
        return LiveFindings::Run(reader, folder, records, layoutFiles, previous ? &*previous : nullptr);
    }));
}

void LiveProblems::_Finished()
{
    m_last = m_watcher.result();
    if (m_pending) {
        m_pending = false;
        _Start();
        return;
    }
    m_model.SetDiagnostics(m_last->all + m_dropped, m_folder);
    emit Busy(false);
    emit Updated();
}

} // namespace ProductEditor
