// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseDocument.h"

#include "casefile/CaseHistory.h"
#include "casefile/Journal.h"
#include "desktop/case/ScenePictures.h"
#include "krn/CaseUnknown.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

/// The case is looked at this often for changes that nobody announced: values that masks keep in it.
constexpr int kShortestPoll = 400; // ms
/// With the quarter of a second that the journal may wait, it is less than a second behind.
constexpr int kLongestPoll = 650;
constexpr int kPollCostFactor = 10;
constexpr int kMostRecentFiles = 12;
constexpr std::uint64_t kNeverSaved = 0; // no state of a history

} // namespace

struct CaseDocument::Parts {
    explicit Parts(CRuvData& data) : history(data) {}

    casefile::CaseHistory history;
    std::unique_ptr<casefile::Journal> journal;
    std::unique_ptr<QSettings> settings;
    QStringList recent;
    std::uint64_t savedState = kNeverSaved;
    QString nextLabel;
    bool stepOpen = false;
    QTimer commit;
    QTimer poll;
    bool journalHasFailed = false;
    std::string title; ///< as last announced
};

CaseDocument::CaseDocument(bool journal, QObject* parent) : QObject(parent), m_data(std::make_unique<CRuvData>())
{
    casefile::NewExampleCase(*m_data);
    m_parts = std::make_unique<Parts>(*m_data);
    m_parts->savedState = m_parts->history.State();
    const std::string folder = base::UserStateFolder();
    if (journal && !folder.empty()) {
        m_parts->journal = std::make_unique<casefile::Journal>(folder);
        m_parts->settings =
            std::make_unique<QSettings>(QString::fromStdString(folder + "/recent.ini"), QSettings::IniFormat);
        m_parts->recent = m_parts->settings->value("files").toStringList();
    }
    m_parts->commit.setSingleShot(true);
    m_parts->commit.setInterval(0);
    connect(&m_parts->commit, &QTimer::timeout, this, [this] {
        const QString label = std::exchange(m_parts->nextLabel, {});
        Commit(label.isEmpty() ? QStringLiteral("Änderung") : label);
    });
    connect(&m_parts->poll, &QTimer::timeout, this, &CaseDocument::Poll);
    m_parts->poll.start(kShortestPoll);
}

CaseDocument::~CaseDocument() = default;

QString CaseDocument::DisplayName() const
{
    return m_path.isEmpty() ? QStringLiteral("Unbenannt") : QFileInfo(m_path).fileName();
}

void CaseDocument::Poll()
{
    QElapsedTimer clock;
    clock.start();
    std::string text;
    if (!m_parts->stepOpen)
        Commit(QStringLiteral("Eingabe in einer Maske"));
    else if (m_parts->journal && casefile::CaseToJson(*m_data, text) && text != m_parts->history.Text())
        KeepInJournal(text);
    const auto cost = static_cast<int>(clock.elapsed());
    m_parts->poll.setInterval(std::clamp(kPollCostFactor * cost, kShortestPoll, kLongestPoll));

    if (!m_parts->journal)
        return;
    const std::string error = m_parts->journal->Error();
    const bool failed = !error.empty();
    if (failed && !m_parts->journalHasFailed)
        emit journalFailed(QString::fromStdString(error));
    m_parts->journalHasFailed = failed;
}

void CaseDocument::Commit(const QString& label)
{
    if (m_parts->stepOpen)
        return;
    const bool redoable = CanRedo();
    if (m_parts->history.Commit(label.toStdString()))
        AfterChange();
    else if (redoable != CanRedo())
        emit historyChanged();
    const QString problem = QString::fromStdString(m_parts->history.Problem().Text());
    if (problem != m_problem) {
        m_problem = problem;
        if (!problem.isEmpty())
            emit journalFailed(problem);
    }
}

void CaseDocument::NoteChange()
{
    m_parts->commit.start();
}

void CaseDocument::NameNextStep(const QString& label)
{
    m_parts->nextLabel = label;
    m_parts->commit.start();
}

void CaseDocument::AfterChange()
{
    const bool modified = m_parts->history.State() != m_parts->savedState;
    if (m_parts->journal) {
        if (modified)
            KeepInJournal(m_parts->history.Text());
        else
            m_parts->journal->Clear();
    }
    emit changed();
    emit historyChanged();
    SetModified(modified);
    if (m_data->Title() != m_parts->title) {
        m_parts->title = m_data->Title();
        emit titleChanged();
    }
}

void CaseDocument::KeepInJournal(const std::string& text)
{
    m_parts->journal->Put({m_path.toStdString(), m_data->Title(), text});
}

void CaseDocument::BeginStep()
{
    Commit(QStringLiteral("Änderung"));
    m_parts->stepOpen = true;
}

void CaseDocument::EndStep(const QString& label)
{
    if (!std::exchange(m_parts->stepOpen, false))
        return;
    m_parts->nextLabel.clear();
    Commit(label);
}

void CaseDocument::CancelStep()
{
    if (!std::exchange(m_parts->stepOpen, false))
        return;
    m_parts->history.Revert();
    AfterChange();
}

bool CaseDocument::IsStepOpen() const
{
    return m_parts->stepOpen;
}

void CaseDocument::SetModified(bool modified)
{
    if (modified == m_modified)
        return;
    m_modified = modified;
    emit modifiedChanged(modified);
}

void CaseDocument::Begin(const QString& path, bool saved)
{
    m_path = path;
    m_parts->stepOpen = false;
    m_parts->history.Reset();
    m_parts->savedState = saved ? m_parts->history.State() : kNeverSaved;
    m_error.clear();
    AfterChange();
    emit titleChanged();
}

bool CaseDocument::New()
{
    CRuvData fresh;
    casefile::NewExampleCase(fresh);
    casefile::ReplaceCaseAndTell(*m_data, std::move(fresh));
    m_warnings.clear();
    Begin({}, true);
    return true;
}

bool CaseDocument::NewFrom(const std::string& json)
{
    CRuvData content;
    if (const casefile::CaseResult read = casefile::CaseFromJson(json, content); !read) {
        m_error = QString::fromStdString(read.Text());
        return false;
    }
    casefile::ReplaceCaseAndTell(*m_data, std::move(content));
    m_warnings.clear();
    Begin({}, true);
    return true;
}

bool CaseDocument::Open(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    CRuvData content;
    if (const casefile::CaseResult read = casefile::LoadCase(absolute.toStdString(), content); !read) {
        m_error = QString::fromStdString(read.Text());
        return false;
    }
    m_warnings.clear();
    if (content.unknown && content.unknown->minorVersion > casefile::kCaseMinorVersion)
        m_warnings.append(QStringLiteral("Die Datei stammt von einer neueren Programmversion. Was diese Version "
                                         "nicht kennt, bleibt beim Speichern erhalten."));
    casefile::ReplaceCaseAndTell(*m_data, std::move(content));
    Begin(absolute, true);
    AddRecent(absolute);
    return true;
}

bool CaseDocument::Save()
{
    if (m_path.isEmpty()) {
        m_error = QStringLiteral("Der Fall hat noch keinen Dateinamen.");
        return false;
    }
    return SaveAs(m_path);
}

bool CaseDocument::SaveAs(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    m_parts->stepOpen = false;
    // Pictures are named relative to the case's file.
    for (CSzenenBild& picture : m_data->Bilder())
        picture.datei = PictureName(PicturePath(picture.datei, m_path), absolute);
    Commit(QStringLiteral("Änderung"));
    if (const casefile::CaseResult written = casefile::SaveCase(absolute.toStdString(), *m_data); !written) {
        m_error = QString::fromStdString(written.Text());
        return false;
    }
    m_error.clear();
    m_parts->savedState = m_parts->history.State();
    if (m_parts->journal)
        m_parts->journal->Clear();
    SetModified(false);
    if (m_path != absolute) {
        m_path = absolute;
        emit titleChanged();
    }
    AddRecent(absolute);
    return true;
}

void CaseDocument::AddRecent(const QString& path)
{
    // Another program may have written the list meanwhile.
    if (m_parts->settings) {
        m_parts->settings->sync();
        m_parts->recent = m_parts->settings->value("files").toStringList();
    }
    m_parts->recent.removeAll(path);
    m_parts->recent.prepend(path);
    while (m_parts->recent.size() > kMostRecentFiles)
        m_parts->recent.removeLast();
    if (m_parts->settings)
        m_parts->settings->setValue("files", m_parts->recent);
    emit recentFilesChanged();
}

QStringList CaseDocument::RecentFiles() const
{
    QStringList files;
    std::copy_if(m_parts->recent.begin(), m_parts->recent.end(), std::back_inserter(files),
                 [](const QString& path) { return QFileInfo::exists(path); });
    return files;
}

bool CaseDocument::CanUndo() const
{
    return m_parts->history.CanUndo();
}

bool CaseDocument::CanRedo() const
{
    return m_parts->history.CanRedo();
}

QString CaseDocument::UndoLabel() const
{
    return QString::fromStdString(m_parts->history.UndoLabel());
}

QString CaseDocument::RedoLabel() const
{
    return QString::fromStdString(m_parts->history.RedoLabel());
}

void CaseDocument::Undo()
{
    m_parts->stepOpen = false;
    if (m_parts->history.Undo())
        AfterChange();
}

void CaseDocument::Redo()
{
    m_parts->stepOpen = false;
    if (m_parts->history.Redo())
        AfterChange();
}

std::string CaseDocument::CaseText()
{
    m_parts->stepOpen = false;
    Commit(QStringLiteral("Änderung"));
    return m_parts->history.Text();
}

std::vector<LeftBehind> CaseDocument::FindLeftBehind()
{
    std::vector<LeftBehind> all;
    const std::string folder = base::UserStateFolder();
    if (folder.empty())
        return all;
    for (const casefile::FoundJournal& found : casefile::FindJournals(folder)) {
        const QString path = QString::fromStdString(found.content.casePath);
        QString title = QString::fromStdString(found.content.title);
        if (title.isEmpty())
            title = path.isEmpty() ? QStringLiteral("Unbenannt") : QFileInfo(path).fileName();
        const QString time =
            QLocale(QLocale::German)
                .toString(QDateTime::fromSecsSinceEpoch(found.time), QStringLiteral("d. MMMM yyyy, HH:mm:ss"));
        all.push_back({QString::fromStdString(found.path), title, path, time});
    }
    return all;
}

bool CaseDocument::Recover(const LeftBehind& left)
{
    const auto journals = casefile::FindJournals(base::UserStateFolder());
    const auto found = std::find_if(journals.begin(), journals.end(), [&](const casefile::FoundJournal& journal) {
        return journal.path == left.journal.toStdString();
    });
    if (found == journals.end()) {
        m_error = QStringLiteral("Die Sicherung ist nicht mehr da.");
        return false;
    }
    CRuvData content;
    if (const casefile::CaseResult read = casefile::CaseFromJson(found->content.text, content); !read) {
        m_error = QString::fromStdString(read.Text());
        return false;
    }
    m_warnings.clear();
    casefile::ReplaceCaseAndTell(*m_data, std::move(content));
    Begin(left.path, false);
    if (m_parts->journal) {
        m_parts->journal->Flush();
        if (m_parts->journal->Error().empty())
            casefile::RemoveJournal(*found);
    }
    return true;
}

void CaseDocument::Discard(const LeftBehind& left)
{
    casefile::FoundJournal journal;
    journal.path = left.journal.toStdString();
    casefile::RemoveJournal(journal);
}

} // namespace desktop
