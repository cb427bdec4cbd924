// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseHistory.h"

#include "host/Assert.h"
#include "host/CRuvData.h"

#include <memory>
#include <optional>
#include <utility>

namespace casefile
{
namespace
{

const std::string kNoLabel;

/// What of a vehicle two cases tell differently.
struct Differences {
    bool geometry;
    bool phases;
    bool parameters;
};

std::vector<Differences> Compare(const CRuvData& a, const CRuvData& b)
{
    std::vector<Differences> differences;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i)
        differences.push_back(
            {!(a.KfzDat(i) == b.KfzDat(i)), !(a.WZRechDat(i) == b.WZRechDat(i)), !(a.UPa(i) == b.UPa(i))});
    return differences;
}

void Notify(CRuvData& data, const std::vector<Differences>& differences)
{
    for (std::size_t i = 0; i < differences.size(); ++i) {
        if (differences[i].geometry)
            data.NotifyGeo(i);
        if (differences[i].phases)
            data.NotifyWZ(i);
        if (differences[i].parameters)
            data.NotifyUPa(i);
    }
}

std::unique_ptr<CRuvData> Read(const std::string& text)
{
    auto data = std::make_unique<CRuvData>();
    const CaseResult read = CaseFromJson(text, *data);
    RUV_ASSERT(read); // the text came from CaseToJson
    return data;
}

/// `text` is what a file of the content would hold, nothing when no file can.
void ReplaceAndTell(CRuvData& data, CRuvData&& content, const std::optional<std::string>& text)
{
    const auto differences = Compare(data, content);
    const bool sameMaskValues = data.AlleMaskenWerte() == content.AlleMaskenWerte() && data.Video() == content.Video();
    ReplaceCase(data, std::move(content));
    Notify(data, differences);
    if (!sameMaskValues)
        data.BroadcastMessage(WM_RUV_UPDATEDIALOG, 0, 0, nullptr); // masks look at what they keep
    std::string now;
    if (text && (!CaseToJson(data, now) || now != *text))
        ReplaceCase(data, std::move(*Read(*text)));
}

} // namespace

void ReplaceCaseAndTell(CRuvData& data, CRuvData&& content)
{
    std::optional<std::string> text(std::in_place);
    if (!CaseToJson(content, *text))
        text.reset();
    ReplaceAndTell(data, std::move(content), text);
}

CaseHistory::CaseHistory(CRuvData& data) : m_data(data)
{
    Reset();
}

void CaseHistory::Reset()
{
    m_steps.clear();
    m_size = 0;
    m_done = 0;
    m_first = ++m_lastState;
    std::string text;
    m_problem = CaseToJson(m_data, text);
    if (!m_problem) {
        // Begin with an empty case: the first Commit that succeeds makes up for it.
        const CaseResult written = CaseToJson(CRuvData(), text);
        RUV_ASSERT(written);
    }
    m_text = std::move(text);
}

bool CaseHistory::Commit(std::string label)
{
    std::string text;
    m_problem = CaseToJson(m_data, text);
    if (!m_problem || text == m_text)
        return false;
    ForgetUndone();
    m_steps.push_back({std::move(label), base::TextDiff(m_text, text), ++m_lastState});
    m_size += m_steps.back().Size();
    ++m_done;
    m_text = std::move(text);
    return true;
}

void CaseHistory::ForgetUndone()
{
    for (; CanRedo(); m_steps.pop_back())
        m_size -= m_steps.back().Size();
}

const std::string& CaseHistory::UndoLabel() const
{
    return CanUndo() ? m_steps[m_done - 1].label : kNoLabel;
}

const std::string& CaseHistory::RedoLabel() const
{
    return CanRedo() ? m_steps[m_done].label : kNoLabel;
}

bool CaseHistory::Undo()
{
    Commit("Änderung");
    if (!CanUndo())
        return false;
    --m_done;
    Restore(m_steps[m_done].diff.Backward(m_text));
    return true;
}

bool CaseHistory::Redo()
{
    Commit("Änderung");
    if (!CanRedo())
        return false;
    Restore(m_steps[m_done].diff.Forward(m_text));
    ++m_done;
    return true;
}

void CaseHistory::Restore(std::string text)
{
    m_text = std::move(text);
    ReplaceAndTell(m_data, std::move(*Read(m_text)), m_text);
}

} // namespace casefile
