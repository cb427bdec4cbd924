// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The open case with its file, its history and its journal. Asks nothing and shows nothing: see CaseFileDialogs.h.
#pragma once

#include "host/CRuvData.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace desktop
{

/// A case that a program left behind when it ended without closing it.
struct LeftBehind {
    QString journal; ///< what Recover and Discard take
    QString title;   ///< of the case, or the name of its file
    QString path;    ///< of the case file it was opened from, empty when it was never saved
    QString time;    ///< when it was last written, as text
};

enum class OpenMode { edit, readOnly };

class CaseDocument : public QObject
{
    Q_OBJECT

  public:
    /// An empty case. With `journal` false nothing is written to the user's state folder.
    explicit CaseDocument(bool journal = true, QObject* parent = nullptr);
    ~CaseDocument() override;

    /// The same object for the document's whole life: masks hold references to it. New, Open, Undo and Redo exchange
    /// its content and tell the open masks.
    CRuvData& Data() { return *m_data; }
    const CRuvData& Data() const { return *m_data; }

    /// Absolute path of the case file, empty for a case that was never saved.
    const QString& Path() const { return m_path; }
    /// Name of the file without its folder, or "Unbenannt".
    QString DisplayName() const;
    /// True when the case differs from its file.
    bool IsModified() const { return m_modified; }

    /// The phases of a vehicle as the last step left them.
    const CWegZeitDat& LastPhases(std::size_t vehicle) const { return m_lastPhases[vehicle]; }

    // The following return false when they failed; Error() says why, in German. Unsaved changes are not asked about.
    bool New();
    /// A new case with the content of a case file, for example one that comes with the program.
    bool NewFrom(const std::string& json);
    bool Open(const QString& path, OpenMode mode = OpenMode::edit);
    /// Leaves a file alone that somebody else has changed, unless forced: then FileIsForeign() is true.
    bool Save(bool force = false);
    bool SaveAs(const QString& path, bool force = false);
    const QString& Error() const { return m_error; }

    /// Whether another program of this user works on the file; also when nobody does any more and a crash left its
    /// mark.
    bool IsOpenElsewhere(const QString& path) const;
    /// Opened so, or open elsewhere: Save refuses.
    bool IsReadOnly() const { return m_readOnly; }
    /// Whether the file holds something else than what was read from it or written to it last.
    bool FileIsForeign() const { return m_foreign; }
    /// Looks at the file; fileChanged tells when somebody has changed it since the last look.
    void CheckFile();
    /// Why a crash would lose what is not in the file, in German; empty while the case is protected.
    QString Unprotected() const;
    /// What differs between the file and the case, as text for the user.
    QString Differences();
    /// What the file opened last contained that could not be taken over, in German.
    const QStringList& Warnings() const { return m_warnings; }

    /// Most recently used first; files that are gone are left out.
    QStringList RecentFiles() const;

    bool CanUndo() const;
    bool CanRedo() const;
    /// What Undo or Redo would take back or repeat, for the menu; empty when there is nothing.
    QString UndoLabel() const;
    QString RedoLabel() const;

    /// The case as its file would hold it now.
    std::string CaseText();

    /// Cases left behind by programs that no longer run. Sentences about files that cannot be read go to `kept`.
    static std::vector<LeftBehind> FindLeftBehind(QStringList* kept = nullptr);
    /// Opens such a case as a modified one. Its journal is removed once the document's own journal holds the case.
    bool Recover(const LeftBehind& left);
    static void Discard(const LeftBehind& left);

    /// What changes until EndStep becomes one step, however long it takes: a drag. The journal goes on meanwhile. Undo,
    /// redo, saving and another case end it too.
    void BeginStep();
    void EndStep(const QString& label);
    /// Takes back what changed since BeginStep, bit for bit.
    void CancelStep();
    bool IsStepOpen() const;

  public slots:
    void Undo();
    void Redo();
    /// Takes what changed since the last call into the history as one step. Nothing happens when nothing changed.
    void Commit(const QString& label);
    /// For FrontEnd::CaseChanged: something in the case changed. Commits when control returns to the event loop, so
    /// that one user action is one step however many records it touches.
    void NoteChange();
    /// The label of the step that the changes noted until the next return to the event loop make, for example
    /// "Maske 450 Abbiegen".
    void NameNextStep(const QString& label);

  signals:
    /// The content of the case changed: redraw what shows it.
    void changed();
    /// The phases of a vehicle are others; before changed.
    void phasesChanged();
    void modifiedChanged(bool modified);
    /// Path, name or title of the case changed.
    void titleChanged();
    /// What can be undone and redone changed.
    void historyChanged();
    void recentFilesChanged();
    /// Somebody else changed the case's file, or it is as it was again.
    void fileChanged();
    /// The journal cannot be written, or the case is in a state that no file can hold; said once until it works again.
    void journalFailed(const QString& why);
    /// Unprotected() says something else.
    void protectionChanged();

  private:
    struct Parts;
    void Poll();
    void KeepInJournal(const std::string& text);
    /// Tells everybody that the content is another, and the journal.
    void AfterChange();
    /// Makes what the case holds now the beginning of a new history.
    void Begin(const QString& path, bool saved);
    void SetModified(bool modified);
    void AddRecent(const QString& path);
    void Watch(const std::string& digest);
    void Claim();

    std::unique_ptr<CRuvData> m_data;
    std::vector<CWegZeitDat> m_lastPhases = std::vector<CWegZeitDat>(CRuvData::kFahrzeuge);
    std::unique_ptr<Parts> m_parts;
    QString m_path;
    QString m_error;
    QString m_journalProblem;
    QString m_problem; ///< why the case cannot be written, as last announced
    QStringList m_warnings;
    bool m_modified = false;
    bool m_readOnly = false;
    bool m_foreign = false;
};

} // namespace desktop
