// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CRuvFileDialog.h"

#include "base/AtomicFile.h"
#include "framework/UiThread.h"
#include "framework/WndAccess.h"
#include "host/FehlerMeldung.h"

#include <utility>

namespace
{

constexpr UINT kMeldungFehlt = 1004;
constexpr UINT kMeldungUeberschreiben = 1005;

bool HasExtension(const std::string& path)
{
    const std::size_t folder = path.find_last_of("/\\");
    const std::size_t point = path.rfind('.');
    const std::size_t name = folder == std::string::npos ? 0 : folder + 1;
    return point != std::string::npos && point > name;
}

} // namespace

CRuvFileDialog::CRuvFileDialog(bool open, std::string defaultExtension, std::string initialName, DWORD flags,
                               std::string filter, CWnd* parent)
    : m_open(open), m_extension(std::move(defaultExtension)), m_initialName(std::move(initialName)), m_flags(flags),
      m_filter(std::move(filter)), m_parent(parent), m_title(open ? "Datei öffnen" : "Datei speichern unter")
{
    m_extension.erase(0, m_extension.rfind('.') + 1);
}

std::string CRuvFileDialog::Completed(const std::string& path) const
{
    if (m_extension.empty() || HasExtension(path))
        return path;
    std::string completed = path + "." + m_extension;
    return m_open && (base::FileExists(path) || !base::FileExists(completed)) ? path : completed;
}

INT_PTR CRuvFileDialog::DoModal()
{
    framework::UiThread* thread = framework::UiThread::Current();
    if (thread == nullptr)
        return IDCANCEL;
    const framework::UiThread::Scope scope(*thread);
    framework::FileRequest request;
    request.open = m_open;
    request.mustExist = (m_flags & OFN_FILEMUSTEXIST) != 0;
    request.title = m_title;
    request.filter = m_filter;
    request.defaultExtension = m_extension;
    request.initialName = m_initialName;
    for (;;) {
        request.owner = m_parent == nullptr ? nullptr : framework::WindowOf(*m_parent);
        const auto chosen = thread->Front().ChooseFile(request);
        if (!chosen || chosen->empty())
            return IDCANCEL;
        const std::string path = Completed(*chosen);
        request.initialName = path;
        if (m_open && request.mustExist && !base::IsOrdinaryFile(path)) {
            FehlerMeldung(m_parent, kMeldungFehlt, path);
            continue;
        }
        const bool asks = !m_open && (m_flags & OFN_OVERWRITEPROMPT) != 0 && base::FileExists(path);
        if (asks && FehlerMeldung(m_parent, kMeldungUeberschreiben, path) != fehlerJa)
            continue;
        m_path = path;
        return IDOK;
    }
}
