#pragma once

#include "foundation/win/HVUniqueResource.h"
#include "toolkit/win/HVControlWnd.h"

// Shows a PNG or JPEG picture, scaled to fit and centred, with the theme's background around
// it (transparent PNG parts show that background too).
class HVImageCtrl : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVPlacement& place);
    // False (and the picture cleared) when the file can't be read or decoded.
    bool LoadFile(const HVString& path);
    bool HasImage() const { return bitmap_.IsValid(); }
    SIZE ImageSize() const { return size_; }

    void OnDrawItem(const DRAWITEMSTRUCT& item) override;

private:
    HVGdiObject bitmap_;
    SIZE size_ = {};
};
