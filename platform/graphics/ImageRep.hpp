#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"

#include <cstdint>
#include <string>

typedef struct _cairo_surface cairo_surface_t;

namespace ns {

// One rendition of an image: a size in points and the pixels behind it.
class ImageRep : public Object {
public:
    // The size in points; by default the pixel size (one pixel per point).
    Size size() const { return m_size; }
    // Negative extents are taken as 0.
    void setSize(Size size);
    int64_t pixelsWide() const { return m_pixelsWide; }
    int64_t pixelsHigh() const { return m_pixelsHigh; }
    bool hasAlpha() const { return m_hasAlpha; }
    bool isOpaque() const { return !m_hasAlpha; }
    int64_t bitsPerSample() const { return m_bitsPerSample; }
    const std::string& colorSpaceName() const { return m_colorSpaceName; }

    // The pixels as a Cairo image surface owned by the rep, or nullptr when it has none.
    virtual cairo_surface_t* cairoSurface() const = 0;

    // Draws the whole rep into the rectangle of the current context, source-over; false
    // without a current context or pixels.
    bool drawInRect(const Rect& rect) const;
    // The same at the origin, at the rep's size.
    bool draw() const;

    std::string description() const override;

protected:
    ImageRep(int64_t pixelsWide, int64_t pixelsHigh, bool hasAlpha, int64_t bitsPerSample,
             std::string colorSpaceName);

private:
    Size m_size;
    int64_t m_pixelsWide;
    int64_t m_pixelsHigh;
    bool m_hasAlpha;
    int64_t m_bitsPerSample;
    std::string m_colorSpaceName;
};

} // namespace ns
