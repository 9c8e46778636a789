#include "foundation/win/HVComInit.h"
#include "toolkit/win/HVImageFile.h"
#include "toolkit/win/HVToolkit.h"

#include "FolderTree.h"
#include "OffscreenCanvas.h"
#include "PicturePopup.h"
#include "SourceFile.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

namespace
{
HVString DataFile(const char16_t* name) { return SourceFilePath("tests/toolkit/win/data/") + name; }

// Transparent parts of a picture show the background.
TEST(HVImageCtrlTest, ShowsPngAndJpegAndRefusesWhatIsNeither)
{
    HVComInit com;
    PicturePopup popup;
    ASSERT_TRUE(popup.Make());
    struct Row { const char16_t* file; bool shown; LONG width, height; } rows[] = {
        {u"Sample.jpg", true, 40, 30}, {u"Broken.png", false, 0, 0}, {u"Missing.png", false, 0, 0}, {u"Sample.png", true, 40, 20},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(HVString(row.file).ToUtf8());
        EXPECT_EQ(popup.image.LoadFile(DataFile(row.file)), row.shown);
        EXPECT_EQ(popup.image.HasImage(), row.shown);
        EXPECT_EQ(popup.image.ImageSize().cx, row.width);
        EXPECT_EQ(popup.image.ImageSize().cy, row.height);
    }
    // Drawn into a bitmap of the picture's own size: the left half is green, the right clear.
    const OffscreenCanvas canvas(40, 20);
    DRAWITEMSTRUCT item = {};
    item.hDC = canvas.Dc();
    item.rcItem = {0, 0, 40, 20};
    popup.image.OnDrawItem(item);
    EXPECT_GT(GetGValue(canvas.Pixel(5, 10)), 100);
    EXPECT_LT(GetRValue(canvas.Pixel(5, 10)), 60);
    EXPECT_EQ(canvas.Pixel(35, 10), ::GetSysColor(COLOR_BTNFACE));
}

// A skin's title-bar icon may be a PNG: it becomes an icon of each size the frame asks for.
TEST(HVImageFileTest, PictureBecomesAnIconOfTheAskedSize)
{
    HVComInit com;
    for (int size : {16, 24, 32, 48}) {
        HICON icon = HVImageFile::MakeIcon(DataFile(u"Sample.png"), size);
        ASSERT_NE(icon, nullptr) << size;
        ICONINFO info = {};
        ASSERT_TRUE(::GetIconInfo(icon, &info));
        BITMAP bitmap = {};
        ::GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
        EXPECT_EQ(bitmap.bmWidth, size);
        EXPECT_EQ(bitmap.bmHeight, size);
        ::DeleteObject(info.hbmColor);
        ::DeleteObject(info.hbmMask);
        ::DestroyIcon(icon);
    }
    EXPECT_EQ(HVImageFile::MakeIcon(DataFile(u"Broken.png"), 32), nullptr);
    EXPECT_EQ(HVImageFile::MakeIcon(DataFile(u"Sample.png"), 0), nullptr);
}

// The skin file's "Titlebar Icon" resource names the icon, relative to the skin's folder; a
// loose icon file beside the skin counts for nothing.
TEST(HVToolkitTest, TheSkinsTitlebarIconResourceNamesTheIcon)
{
    const std::wstring folder = e2e::ScratchFolder(L"HVToolkit");
    ASSERT_FALSE(folder.empty());
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Titlebar Icon.png", "loose"));
    ASSERT_TRUE(::CreateDirectoryW((folder + L"Icons").c_str(), nullptr));
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Icons\\Bar.png", "icon"));
    struct Row
    {
        const char* skin;       // nullptr: no skin file
        const wchar_t* icon;    // relative to the folder; empty: the program's own
    } rows[] = {
        {R"(<Skin><Color name="TextColor"/><Resource name="Titlebar Icon" file="Icons\Bar.png"/></Skin>)", L"Icons\\Bar.png"},
        {R"(<Skin><Resource name="Titlebar Icon" file="Icons\Gone.png"/></Skin>)", L""},
        {R"(<Skin><Resource name="Logo" file="Icons\Bar.png"/></Skin>)", L""},
        {nullptr, L""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.skin ? row.skin : "no skin file");
        const std::wstring skin = folder + L"skin.xml";
        ::DeleteFileW(skin.c_str());
        if (row.skin) {
            ASSERT_TRUE(e2e::WriteFileBytes(skin, row.skin));
        }
        HVPopupWnd::SetTitlebarIconFile(u"before");
        const std::wstring expected = *row.icon ? folder + row.icon : L"";
        EXPECT_EQ(HVToolkit::ApplySkin(HVString(skin.c_str())), !expected.empty());
        EXPECT_EQ(HVPopupWnd::GetTitlebarIconFile(), HVString(expected.c_str()));
    }
    HVPopupWnd::SetTitlebarIconFile(HVString());
}
}   // namespace
