// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseHistory.h"

#include "host/Assert.h"
#include "host/CRuvData.h"

#include <memory>
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

} // namespace

void ReplaceCaseAndTell(CRuvData& data, CRuvData&& content)
{
    const auto differences = Compare(data, content);
    const bool sameMaskValues = data.AlleMaskenWerte() == content.AlleMaskenWerte() && data.Video() == content.Video();
    std::string text;
    const CaseResult written = CaseToJson(content, text);
    ReplaceCase(data, std::move(content));
    Notify(data, differences);
    if (!sameMaskValues)
        data.BroadcastMessage(WM_RUV_UPDATEDIALOG, 0, 0, nullptr); // masks look at what they keep
    std::string now;
    if (written && (!CaseToJson(data, now) || now != text))
        ReplaceCase(data, std::move(*Read(text)));
}

CaseHistory::CaseHistory(CRuvData& data) : m_data(data)
{
    Reset();
}

void CaseHistory::Reset()
{
    m_steps.clear();
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
    m_steps.erase(m_steps.begin() + static_cast<std::ptrdiff_t>(m_done), m_steps.end());
    m_steps.push_back({std::move(label), base::TextDiff(m_text, text), ++m_lastState});
    ++m_done;
    m_text = std::move(text);
    return true;
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
    ReplaceCaseAndTell(m_data, std::move(*Read(m_text)));
}

std::size_t CaseHistory::Size() const
{
    std::size_t size = m_steps.capacity() * sizeof(Step);
    for (const Step& step : m_steps)
        size += step.label.capacity() + step.diff.Size();
    return size;
}

} // namespace casefile
