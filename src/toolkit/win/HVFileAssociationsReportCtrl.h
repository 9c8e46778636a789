#pragma once

#include "toolkit/win/HVControlWnd.h"

#include <vector>

// The file types to choose from: the system's list view with a check box per row (space
// toggles the focused row), one row per extension showing it and its description, grouped
// by media type.
class HVFileAssociationsReportCtrl : public HVControlWnd
{
public:
    struct Row
    {
        HVString extension;
        HVString description;
        HVString group;  // the media type
        bool checked = false;
    };

    bool Create(HVLayoutWnd& parent, const HVPlacement& place, int id = 0);
    void SetRows(const std::vector<Row>& rows);
    // Checks exactly the rows whose extension is listed (without regard to case).
    void CheckOnly(const std::vector<HVString>& extensions);
    void CheckAll(bool checked);
    std::vector<HVString> Checked() const;
    int RowCount() const;

private:
    std::vector<HVString> extensions_;
};
