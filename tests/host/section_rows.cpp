#include "section_rows.h"

#include <olectl.h>

#include <cstring>

using vrx::cDIBSection;

namespace host {

Row rowOf(const cDIBSection& section, int y) {
    const std::uint8_t* const start = section.DIBSectionBitsPtr() + y * section.BytesPerScanLine();
    return {start, start + section.Width() * 3};
}

std::vector<Row> rowsOf(const cDIBSection& section) {
    std::vector<Row> rows;
    for (int y = 0; y < section.Height(); ++y) rows.push_back(rowOf(section, y));
    return rows;
}

std::unique_ptr<cDIBSection> sectionOf(const std::vector<Row>& rows) {
    auto section = std::make_unique<cDIBSection>();
    section->Create(static_cast<int>(rows[0].size() / 3), static_cast<int>(rows.size()));
    std::uint8_t* start = section->DIBSectionBitsPtr();
    for (const Row& row : rows) {
        std::memcpy(start, row.data(), row.size());
        start += section->BytesPerScanLine();
    }
    return section;
}

vrx::ComPtr<IPictureDisp> pictureOf(const cDIBSection& section) {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap =
        static_cast<HBITMAP>(CopyImage(section.hDib(), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    vrx::ComPtr<IPictureDisp> picture;
    OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(picture.put()));
    return picture;
}

}  // namespace host
