#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"
#include "platform/graphics/Graphics.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

typedef struct _cairo_surface cairo_surface_t;

namespace ns {

class BitmapImageRep;
class ImageRep;

// Key of the hints dictionary of Image::drawInRect: an ImageInterpolation value (integer).
inline constexpr const char* ImageHintInterpolation = "NSImageHintInterpolation";

// An image: a size in points and its representations. Drawing picks the representation with
// the most pixels. Images drawn into with lockFocus get one bitmap of one pixel per point.
// For the main thread.
class Image : public Object {
public:
    explicit Image(Size size);

    // An empty image of that size (negative extents are taken as 0).
    static Ref<Image> make(Size size);
    // Reads PNG data; nil when the bytes are not an image. The size is the pixel size.
    static Ref<Image> imageWithData(const std::vector<uint8_t>& data);
    static Ref<Image> imageWithContentsOfFile(const std::string& path);
    // The image registered under the name (setName), else the file "<name>.png" (or the name
    // itself when it ends in ".png") in the search directories, loaded once and registered;
    // nil when there is none.
    static Ref<Image> imageNamed(std::string_view name);
    // Directories imageNamed looks in, in the order added.
    static void addImageSearchDirectory(const std::string& directory);

    // Registers the image under the name for imageNamed (the registry keeps it alive); false
    // when another image holds the name. nullopt unregisters.
    bool setName(const std::optional<std::string>& name);
    const std::optional<std::string>& name() const { return m_name; }

    Size size() const { return m_size; }
    void setSize(Size size);
    const std::vector<Ref<ImageRep>>& representations() const { return m_reps; }
    // Nil is ignored; so is a rep already held.
    void addRepresentation(const Ref<ImageRep>& rep);
    void removeRepresentation(const Ref<ImageRep>& rep);
    // The representation with the most pixels; nil when there is none.
    Ref<ImageRep> bestRepresentation() const;
    // Whether the image has a size and something to draw.
    bool isValid() const;

    // Makes a context drawing into the image current until unlockFocus (saving the current
    // context). The image's content becomes one bitmap at one pixel per point. An image of zero
    // size logs and gets no context (drawing does nothing) but lockFocus/unlockFocus still pair.
    void lockFocus();
    void lockFocusFlipped(bool flipped);
    // Unbalanced calls log and do nothing.
    void unlockFocus();

    // Draws the part `fromRect` of the image (in image points; an empty rectangle means the whole
    // image) into `rect` of the current context with the operation and opacity `fraction`
    // (0...1). With respectFlipped, a flipped context still shows the image upright; without,
    // it shows it upside down. Hints may carry ImageHintInterpolation; otherwise the context's
    // interpolation applies. Copy with a fraction below 1 leaves the destination as the faded
    // image (not a mix with what was there). Nothing happens without a current context.
    void drawInRect(const Rect& rect, const Rect& fromRect, CompositingOperation operation, double fraction,
                    bool respectFlipped, const Dictionary& hints) const;
    void drawInRect(const Rect& rect, const Rect& fromRect, CompositingOperation operation,
                    double fraction) const;
    // Whole image, source-over, opaque, upright.
    void drawInRect(const Rect& rect) const;
    // At its size (or that of fromRect) with the lower-left corner at the point.
    void drawAtPoint(Point point, const Rect& fromRect, CompositingOperation operation,
                     double fraction) const;

    // The best representation's pixels as PNG data, readable by imageWithData; empty when the
    // image has no pixels.
    std::vector<uint8_t> dataRepresentation() const;
    // The image's lossless data form (PNG bytes here), as dataRepresentation.
    std::vector<uint8_t> TIFFRepresentation() const { return dataRepresentation(); }
    // The best representation as a bitmap (itself when it is one); nil when there is none.
    Ref<BitmapImageRep> bitmapRepresentation() const;

    // A new image of the same size holding copies of the representations.
    Ref<Image> copy() const;

    // The best representation's pixels, for drawing code of this layer; nullptr when none.
    cairo_surface_t* rasterSurface() const;

    std::string description() const override;

private:
    Ref<BitmapImageRep> focusBitmap();

    Size m_size;
    std::vector<Ref<ImageRep>> m_reps;
    std::optional<std::string> m_name;
    int m_focusDepth = 0;
};

} // namespace ns
