// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseDocument.h"

#include "base/JsonValue.h"
#include "base/Utf.h"
#include "casefile/CaseDifferences.h"
#include "casefile/CaseHistory.h"
#include "casefile/FileClaim.h"
#include "casefile/Journal.h"
#include "krn/CaseUnknown.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFileSystemWatcher>
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
    std::string title; ///< as last announced
    std::string stateFolder;
    std::unique_ptr<casefile::FileClaim> claim;
    std::string digest; ///< of the file when it was read or written last
    QFileSystemWatcher watcher;
    QTimer look;
};

CaseDocument::CaseDocument(bool journal, QObject* parent) : QObject(parent), m_data(std::make_unique<CRuvData>())
{
    casefile::NewExampleCase(*m_data);
    m_parts = std::make_unique<Parts>(*m_data);
    m_parts->savedState = m_parts->history.State();
    const std::string folder = base::UserStateFolder();
    if (journal && folder.empty())
        m_journalProblem = QStringLiteral("Es gibt keinen Ordner für die Sicherung im Hintergrund.");
    if (journal && !folder.empty()) {
        m_parts->stateFolder = folder;
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
    // Programs write a file in several steps.
    constexpr int kSettle = 150; // ms
    m_parts->look.setSingleShot(true);
    m_parts->look.setInterval(kSettle);
    connect(&m_parts->look, &QTimer::timeout, this, &CaseDocument::CheckFile);
    connect(&m_parts->watcher, &QFileSystemWatcher::fileChanged, &m_parts->look, qOverload<>(&QTimer::start));
    connect(&m_parts->watcher, &QFileSystemWatcher::directoryChanged, &m_parts->look, qOverload<>(&QTimer::start));
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
    const QString error = QString::fromStdString(m_parts->journal->Error());
    if (!error.isEmpty() && m_journalProblem.isEmpty())
        emit journalFailed(error);
    if (std::exchange(m_journalProblem, error) != error)
        emit protectionChanged();
}

QString CaseDocument::Unprotected() const
{
    return m_problem.isEmpty() ? m_journalProblem : m_problem;
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
        emit protectionChanged();
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
    bool others = false;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        const CWegZeitDat& now = std::as_const(*m_data).WZRechDat(i);
        if (now == m_lastPhases[i])
            continue;
        m_lastPhases[i] = now;
        others = true;
    }
    if (others)
        emit phasesChanged();
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
    m_parts->journal->Put({m_path.toStdString(), m_data->Title(), text, m_parts->digest});
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

void CaseDocument::Claim()
{
    m_parts->claim.reset();
    if (!m_path.isEmpty() && !m_readOnly && !m_parts->stateFolder.empty())
        m_parts->claim = casefile::FileClaim::Take(m_parts->stateFolder, m_path.toStdString());
}

bool CaseDocument::IsOpenElsewhere(const QString& path) const
{
    if (m_parts->stateFolder.empty())
        return false;
    const QFileInfo file(path);
    if (m_parts->claim && file == QFileInfo(m_path))
        return false;
    return casefile::FileClaim::Take(m_parts->stateFolder, file.absoluteFilePath().toStdString()) == nullptr;
}

void CaseDocument::Watch(const std::string& digest)
{
    m_parts->digest = digest;
    const QStringList before = m_parts->watcher.files() + m_parts->watcher.directories();
    if (!before.isEmpty())
        m_parts->watcher.removePaths(before);
    if (!m_path.isEmpty()) {
        m_parts->watcher.addPath(QFileInfo(m_path).absolutePath()); // a file that is replaced is another one
        m_parts->watcher.addPath(m_path);
    }
    if (std::exchange(m_foreign, false))
        emit fileChanged();
}

void CaseDocument::CheckFile()
{
    if (m_path.isEmpty() || m_parts->digest.empty())
        return;
    const std::string now = casefile::FileDigest(m_path.toStdString());
    const bool foreign = now != m_parts->digest && now != casefile::kNoFile;
    if (QFileInfo::exists(m_path))
        m_parts->watcher.addPath(m_path);
    if (foreign == m_foreign)
        return;
    m_foreign = foreign;
    emit fileChanged();
}

QString CaseDocument::Differences()
{
    std::string file;
    if (const auto read = base::ReadWholeFile(m_path.toStdString(), file, base::kJsonMaxBytes); !read)
        return QString::fromStdString(read.Text());
    constexpr std::size_t kMost = 500;
    constexpr std::size_t kLongest = 200; // of a value, bytes
    const auto shown = [](const std::string& value) {
        return value.empty() ? QStringLiteral("—")
                             : QString::fromStdString(base::ValidUtf8(value.substr(0, kLongest))) +
                                   (value.size() > kLongest ? QStringLiteral("…") : QString());
    };
    const auto all = casefile::CaseDifferences(file, CaseText());
    QString text = all.empty() ? QStringLiteral("Datei und Fall haben denselben Inhalt.")
                               : QStringLiteral("Wert: in der Datei → in diesem Fall\n");
    for (std::size_t i = 0; i < all.size() && i < kMost; ++i)
        text += QStringLiteral("\n%1: %2 → %3")
                    .arg(QString::fromStdString(all[i].pointer), shown(all[i].before), shown(all[i].after));
    if (all.size() > kMost)
        text += QStringLiteral("\n… und %1 weitere").arg(all.size() - kMost);
    return text;
}

void CaseDocument::Begin(const QString& path, bool saved)
{
    m_path = path;
    m_data->Falldatei() = path.toStdString();
    m_readOnly = false;
    Claim();
    Watch({});
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

bool CaseDocument::Open(const QString& path, OpenMode mode)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    CRuvData content;
    const casefile::CaseResult read = casefile::LoadCase(absolute.toStdString(), content);
    if (!read) {
        m_error = QString::fromStdString(read.Text());
        return false;
    }
    m_warnings.clear();
    if (content.unknown && content.unknown->minorVersion > casefile::kCaseMinorVersion)
        m_warnings.append(QStringLiteral("Die Datei stammt von einer neueren Programmversion. Was diese Version "
                                         "nicht kennt, bleibt beim Speichern erhalten."));
    casefile::ReplaceCaseAndTell(*m_data, std::move(content));
    Begin(absolute, true);
    Watch(read.digest);
    if (mode == OpenMode::readOnly) {
        m_readOnly = true;
        Claim();
        emit titleChanged();
    }
    AddRecent(absolute);
    return true;
}

bool CaseDocument::Save(bool force)
{
    if (m_readOnly) {
        m_error = QStringLiteral("Der Fall ist schreibgeschützt geöffnet. Er lässt sich unter einem anderen Namen "
                                 "speichern.");
        return false;
    }
    if (m_path.isEmpty()) {
        m_error = QStringLiteral("Der Fall hat noch keinen Dateinamen.");
        return false;
    }
    return SaveAs(m_path, force);
}

bool CaseDocument::SaveAs(const QString& path, bool force)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    m_parts->stepOpen = false;
    const std::vector<CSzenenBild> pictures = m_data->Bilder();
    const CVideoQuelle video = m_data->Video();
    casefile::MovePictures(*m_data, m_path.toStdString(), absolute.toStdString());
    Commit(QStringLiteral("Änderung"));
    const bool own = absolute == m_path;
    const casefile::CaseResult written = casefile::SaveCase(
        absolute.toStdString(), *m_data, own && force ? casefile::Overwrite::force : casefile::Overwrite::onlyCases,
        base::SystemFileCalls(), own ? m_parts->digest : std::string());
    if (!written) {
        m_error = QString::fromStdString(written.Text());
        if (absolute != m_path) {
            m_data->Bilder() = pictures;
            m_data->Video() = video;
        }
        Commit(QStringLiteral("Änderung"));
        CheckFile();
        return false;
    }
    m_error.clear();
    m_parts->savedState = m_parts->history.State();
    if (m_parts->journal)
        m_parts->journal->Clear();
    SetModified(false);
    if (!own || m_readOnly) {
        m_path = absolute;
        m_data->Falldatei() = absolute.toStdString();
        m_readOnly = false;
        Claim();
        emit titleChanged();
    }
    Watch(written.digest);
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

std::vector<LeftBehind> CaseDocument::FindLeftBehind(QStringList* kept)
{
    std::vector<LeftBehind> all;
    const std::string folder = base::UserStateFolder();
    if (folder.empty())
        return all;
    std::vector<casefile::KeptJournalFile> files;
    const std::vector<casefile::FoundJournal> journals = casefile::FindJournals(folder, &files);
    for (const casefile::KeptJournalFile& file : files)
        if (kept != nullptr)
            kept->append(QStringLiteral("Eine Sicherung %1. Sie bleibt erhalten: %2")
                             .arg(QString::fromStdString(file.reason), QString::fromStdString(file.path)));
    for (const casefile::FoundJournal& found : journals) {
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
    Watch(found->content.digest);
    if (IsOpenElsewhere(m_path)) {
        m_readOnly = true;
        emit titleChanged();
    }
    CheckFile();
    if (m_parts->journal) {
        KeepInJournal(m_parts->history.Text());
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
