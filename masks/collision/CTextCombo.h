// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Bindings.h"
#include "host/CWnd.h"

/// A choice of consecutive texts of the module; the field holds the number of the chosen one, from 0 on.
class CTextCombo final : public CChoiceCombo
{
  public:
    CTextCombo(CMDIDialog* parent, UINT controlId, std::int64_t* field, UINT firstText, int texts)
        : CChoiceCombo(parent, controlId, field, nullptr, nullptr), m_firstText(firstText), m_texts(texts)
    {
    }

  protected:
    void Entries(const TakeEntry& take) const override
    {
        for (int i = 0; i < m_texts; ++i)
            take(i, std::nullopt, LoadRuvString(m_firstText + static_cast<UINT>(i)));
    }

  private:
    UINT m_firstText;
    int m_texts;
};
