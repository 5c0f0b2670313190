#pragma once

#include "host/FileAccess.h"

#include "store/VantixJsonData.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QMainWindow;

// What the program adds to the library's window: the title follows the folder, unsaved
// changes are not dropped without asking, and the status bar tells what Save and Load did.
// The library keeps its own silent behaviour; everything here watches its actions, which
// run their handlers before the ones connected here.
class HostFeedback : public QObject
{
public:
    // Load and Reload first finish or undo a save that was interrupted.
    ProductEditor::Reader reader();
    // A file whose content would not change is left as it is and counted.
    ProductEditor::Writer writer();

    void Attach(QMainWindow *window, ProductEditor::VantixJsonData *store);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    template<typename Handler>
    void _Follow(const char *action, Handler handler);

    // The Problems panel shows unless the docks were last left otherwise.
    void _RestoreDocks();
    void _UpdateTitle();
    void _ReportSave();
    QString _SaveLosses() const;
    void _ReportLoad();
    // Save, Discard or Cancel; true when the window may close.
    bool _MayClose();

    static constexpr const char *kDocksKey = "window/docks";

    FileAccess m_access;
    QMainWindow *m_window = nullptr; // the parent
    ProductEditor::VantixJsonData *m_store = nullptr; // lives in the window
    QString m_firstRead; // the first file read since the last report
    QString m_recoveryRefusal; // why that load found an interrupted save it could not finish
    QStringList m_saved; // the files of the current save
    int m_unchanged = 0;
    int m_failed = 0;
};
