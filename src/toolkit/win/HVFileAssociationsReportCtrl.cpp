#include "toolkit/win/HVFileAssociationsReportCtrl.h"

#include "foundation/HVTranslator.h"

#include <commctrl.h>

bool HVFileAssociationsReportCtrl::Create(HVLayoutWnd& parent, const HVPlacement& place, int id)
{
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    ::InitCommonControlsEx(&classes);
    if (!CreateControl(parent, WC_LISTVIEWW, HVString(),
                       WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER, 0, place,
                       id))
        return false;
    ListView_SetExtendedListViewStyle(hwnd_, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    const HVString headers[] = {HVTranslator::Translate(u"Type"), HVTranslator::Translate(u"Description")};
    const int widths[] = {90, 260};
    for (int i = 0; i < 2; ++i) {
        column.cx = widths[i];
        column.pszText = const_cast<wchar_t*>(headers[i].w());
        ListView_InsertColumn(hwnd_, i, &column);
    }
    ListView_EnableGroupView(hwnd_, TRUE);
    return true;
}

void HVFileAssociationsReportCtrl::SetRows(const std::vector<Row>& rows)
{
    ListView_DeleteAllItems(hwnd_);
    ListView_RemoveAllGroups(hwnd_);
    extensions_.clear();
    std::vector<HVString> groups;
    for (const Row& row : rows) {
        int group = 0;
        while (group < static_cast<int>(groups.size()) && groups[group] != row.group)
            ++group;
        if (group == static_cast<int>(groups.size())) {
            groups.push_back(row.group);
            LVGROUP info{};
            info.cbSize = sizeof info;
            info.mask = LVGF_HEADER | LVGF_GROUPID;
            info.pszHeader = const_cast<wchar_t*>(row.group.w());
            info.iGroupId = group;
            ListView_InsertGroup(hwnd_, -1, &info);
        }
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_GROUPID;
        item.iItem = static_cast<int>(extensions_.size());
        item.pszText = const_cast<wchar_t*>(row.extension.w());
        item.iGroupId = group;
        const int at = ListView_InsertItem(hwnd_, &item);
        ListView_SetItemText(hwnd_, at, 1, const_cast<wchar_t*>(row.description.w()));
        ListView_SetCheckState(hwnd_, at, row.checked);
        extensions_.push_back(row.extension);
    }
    if (!extensions_.empty())
        ListView_SetItemState(hwnd_, 0, LVIS_FOCUSED, LVIS_FOCUSED);
}

void HVFileAssociationsReportCtrl::CheckOnly(const std::vector<HVString>& extensions)
{
    for (int row = 0; row < RowCount(); ++row) {
        bool listed = false;
        for (const HVString& extension : extensions)
            listed |= extension.EqualsNoCase(extensions_[row]);
        ListView_SetCheckState(hwnd_, row, listed);
    }
}

void HVFileAssociationsReportCtrl::CheckAll(bool checked)
{
    for (int row = 0; row < RowCount(); ++row)
        ListView_SetCheckState(hwnd_, row, checked);
}

std::vector<HVString> HVFileAssociationsReportCtrl::Checked() const
{
    std::vector<HVString> checked;
    for (int row = 0; row < RowCount(); ++row)
        if (ListView_GetCheckState(hwnd_, row))
            checked.push_back(extensions_[row]);
    return checked;
}

int HVFileAssociationsReportCtrl::RowCount() const { return static_cast<int>(extensions_.size()); }
