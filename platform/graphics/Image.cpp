#include "platform/graphics/Image.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/GraphicsContext.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>

namespace ns {

namespace {

struct NamedImages {
    std::mutex mutex;
    std::map<std::string, Ref<Image>, std::less<>> byName;
    std::vector<std::string> directories;
};

NamedImages& namedImages() {
    static NamedImages instance;
    return instance;
}

Size nonNegative(Size size) {
    return {std::isfinite(size.width) ? std::max(0.0, size.width) : 0.0,
            std::isfinite(size.height) ? std::max(0.0, size.height) : 0.0};
}

cairo_filter_t filterFor(ImageInterpolation interpolation) {
    switch (interpolation) {
    case ImageInterpolation::None:
        return CAIRO_FILTER_NEAREST;
    case ImageInterpolation::Low:
        return CAIRO_FILTER_FAST;
    case ImageInterpolation::High:
        return CAIRO_FILTER_BEST;
    default:
        return CAIRO_FILTER_GOOD;
    }
}

} // namespace

Image::Image(Size size) : m_size(nonNegative(size)) {}

Ref<Image> Image::make(Size size) {
    return create<Image>(size);
}

Ref<Image> Image::imageWithData(const std::vector<uint8_t>& data) {
    auto rep = BitmapImageRep::imageRepWithData(data);
    if (!rep)
        return nullptr;
    auto image = make(rep->size());
    image->addRepresentation(rep);
    return image;
}

Ref<Image> Image::imageWithContentsOfFile(const std::string& path) {
    auto rep = BitmapImageRep::imageRepWithContentsOfFile(path);
    if (!rep)
        return nullptr;
    auto image = make(rep->size());
    image->addRepresentation(rep);
    return image;
}

void Image::addImageSearchDirectory(const std::string& directory) {
    auto& named = namedImages();
    std::lock_guard lock(named.mutex);
    named.directories.push_back(directory);
}

Ref<Image> Image::imageNamed(std::string_view name) {
    if (name.empty())
        return nullptr;
    auto& named = namedImages();
    std::vector<std::string> directories;
    {
        std::lock_guard lock(named.mutex);
        if (auto it = named.byName.find(name); it != named.byName.end())
            return it->second;
        directories = named.directories;
    }
    std::string file(name);
    if (!file.ends_with(".png"))
        file += ".png";
    for (const auto& directory : directories) {
        auto path = std::filesystem::path(directory) / file;
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error))
            continue;
        if (auto image = imageWithContentsOfFile(path.string())) {
            image->setName(std::string(name));
            return imageNamed(name);
        }
    }
    return nullptr;
}

bool Image::setName(const std::optional<std::string>& name) {
    auto& named = namedImages();
    std::lock_guard lock(named.mutex);
    if (name) {
        auto it = named.byName.find(*name);
        if (it != named.byName.end() && it->second.get() != this)
            return false;
    }
    if (m_name)
        named.byName.erase(*m_name);
    m_name = name;
    if (name)
        named.byName[*name] = self<Image>();
    return true;
}

void Image::setSize(Size size) {
    m_size = nonNegative(size);
}

void Image::addRepresentation(const Ref<ImageRep>& rep) {
    if (rep && std::find(m_reps.begin(), m_reps.end(), rep) == m_reps.end())
        m_reps.push_back(rep);
}

void Image::removeRepresentation(const Ref<ImageRep>& rep) {
    std::erase(m_reps, rep);
}

Ref<ImageRep> Image::bestRepresentation() const {
    Ref<ImageRep> best;
    for (const auto& rep : m_reps)
        if (!best || rep->pixelsWide() * rep->pixelsHigh() > best->pixelsWide() * best->pixelsHigh())
            best = rep;
    return best;
}

bool Image::isValid() const {
    auto rep = bestRepresentation();
    return m_size.width > 0 && m_size.height > 0 && rep && rep->cairoSurface();
}

cairo_surface_t* Image::rasterSurface() const {
    auto rep = bestRepresentation();
    return rep ? rep->cairoSurface() : nullptr;
}

Ref<BitmapImageRep> Image::bitmapRepresentation() const {
    return std::dynamic_pointer_cast<BitmapImageRep>(bestRepresentation());
}

// --- Drawing into the image ---------------------------------------------------------------------

Ref<BitmapImageRep> Image::focusBitmap() {
    if (m_size.width > 32767 || m_size.height > 32767) {
        Log("Image: lockFocus on an image of size %@ is beyond what a bitmap can hold.", describe(m_size));
        return nullptr;
    }
    auto pixelsWide = static_cast<int64_t>(std::ceil(m_size.width));
    auto pixelsHigh = static_cast<int64_t>(std::ceil(m_size.height));
    if (m_reps.size() == 1) {
        auto bitmap = std::dynamic_pointer_cast<BitmapImageRep>(m_reps.front());
        if (bitmap && bitmap->hasAlpha() && bitmap->pixelsWide() == pixelsWide &&
            bitmap->pixelsHigh() == pixelsHigh && bitmap->size() == m_size)
            return bitmap;
    }
    if (pixelsWide < 1 || pixelsHigh < 1) {
        Log("Image: lockFocus on an image of size %@ has nothing to draw into.", describe(m_size));
        return nullptr;
    }
    auto bitmap = BitmapImageRep::make(pixelsWide, pixelsHigh);
    if (!bitmap)
        return nullptr;
    bitmap->setSize(m_size);
    // Whatever the image showed so far becomes the bitmap's starting content.
    if (auto previous = bestRepresentation()) {
        auto context = GraphicsContext::graphicsContextWithBitmapImageRep(bitmap);
        GraphicsContext::saveCurrentGraphicsState();
        GraphicsContext::setCurrentContext(context);
        previous->drawInRect({{0, 0}, m_size});
        GraphicsContext::restoreCurrentGraphicsState();
    }
    m_reps = {bitmap};
    return bitmap;
}

void Image::lockFocus() {
    lockFocusFlipped(false);
}

void Image::lockFocusFlipped(bool flipped) {
    auto bitmap = focusBitmap();
    GraphicsContext::saveCurrentGraphicsState();
    GraphicsContext::setCurrentContext(
        bitmap ? GraphicsContext::graphicsContextWithBitmapImageRep(bitmap, flipped) : nullptr);
    ++m_focusDepth;
}

void Image::unlockFocus() {
    if (m_focusDepth == 0) {
        Log("Image: unlockFocus without lockFocus.");
        return;
    }
    --m_focusDepth;
    if (auto context = GraphicsContext::currentContext())
        context->flushGraphics();
    GraphicsContext::restoreCurrentGraphicsState();
}

// --- Drawing the image --------------------------------------------------------------------------

void Image::drawInRect(const Rect& rect, const Rect& fromRect, CompositingOperation operation,
                       double fraction, bool respectFlipped, const Dictionary& hints) const {
    auto context = GraphicsContext::currentContext();
    auto rep = bestRepresentation();
    cairo_surface_t* surface = rep ? rep->cairoSurface() : nullptr;
    if (!context || !surface || !isFinite(rect) || !isFinite(fromRect) ||
        !(rect.width() > 0 && rect.height() > 0))
        return;
    Size imageSize = m_size.width > 0 && m_size.height > 0 ? m_size : rep->size();
    if (!(imageSize.width > 0 && imageSize.height > 0))
        return;

    // The source in image points, kept inside the image; the destination shrinks with it.
    Rect source = fromRect.width() > 0 && fromRect.height() > 0 ? fromRect : Rect{{0, 0}, imageSize};
    Rect inside = source.intersection({{0, 0}, imageSize});
    if (inside.isEmpty())
        return;
    bool upright = respectFlipped && context->isFlipped();
    double kx = rect.width() / source.width(), ky = rect.height() / source.height();
    Rect target{rect.x() + (inside.x() - source.x()) * kx,
                upright ? rect.y() + (source.maxY() - inside.maxY()) * ky
                        : rect.y() + (inside.y() - source.y()) * ky,
                inside.width() * kx, inside.height() * ky};
    source = inside;

    // User space to pixels: x grows with the image; the image's top row is at the target's
    // largest y unless drawn upright in a flipped space.
    double pw = cairo_image_surface_get_width(surface), ph = cairo_image_surface_get_height(surface);
    double px = pw / imageSize.width, py = ph / imageSize.height;
    double sx = source.width() / target.width(), sy = source.height() / target.height();
    cairo_matrix_t m;
    if (upright)
        cairo_matrix_init(&m, sx * px, 0, 0, sy * py, (source.x() - target.x() * sx) * px,
                          (imageSize.height - source.maxY() - target.y() * sy) * py);
    else
        cairo_matrix_init(&m, sx * px, 0, 0, -sy * py, (source.x() - target.x() * sx) * px,
                          (imageSize.height - source.y() + target.y() * sy) * py);

    ImageInterpolation interpolation = context->imageInterpolation();
    if (auto hint = hints.find(ImageHintInterpolation); hint != hints.end() && hint->second.isNumber())
        interpolation = static_cast<ImageInterpolation>(hint->second.integerValue());
    double alpha = std::isnan(fraction) ? 0 : std::clamp(fraction, 0.0, 1.0);

    cairo_t* cr = context->cairo();
    cairo_pattern_t* pattern = cairo_pattern_create_for_surface(surface);
    cairo_pattern_set_matrix(pattern, &m);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern, filterFor(interpolation));

    cairo_save(cr);
    cairo_new_path(cr);
    cairo_rectangle(cr, target.x(), target.y(), target.width(), target.height());
    cairo_clip(cr);
    bool fadedCopy = operation == CompositingOperation::Copy && alpha < 1;
    if (fadedCopy) {
        // Copy means the destination becomes the source; fading it must not keep what was there.
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        cairo_paint(cr);
    }
    cairo_set_operator(cr, fadedCopy ? CAIRO_OPERATOR_OVER
                                     : static_cast<cairo_operator_t>(cairoOperatorFor(operation)));
    context->drawWithShadow([&] {
        cairo_set_source(cr, pattern);
        cairo_paint_with_alpha(cr, alpha);
    });
    cairo_restore(cr);
    cairo_pattern_destroy(pattern);
}

void Image::drawInRect(const Rect& rect, const Rect& fromRect, CompositingOperation operation,
                       double fraction) const {
    drawInRect(rect, fromRect, operation, fraction, false, {});
}

void Image::drawInRect(const Rect& rect) const {
    drawInRect(rect, {}, CompositingOperation::SourceOver, 1.0, true, {});
}

void Image::drawAtPoint(Point point, const Rect& fromRect, CompositingOperation operation,
                        double fraction) const {
    Size size = fromRect.width() > 0 && fromRect.height() > 0 ? fromRect.size : m_size;
    drawInRect({point, size}, fromRect, operation, fraction, false, {});
}

// --- Data ---------------------------------------------------------------------------------------

std::vector<uint8_t> Image::dataRepresentation() const {
    auto bitmap = bitmapRepresentation();
    return bitmap ? bitmap->representationUsingType(BitmapImageFileType::PNG) : std::vector<uint8_t>{};
}

Ref<Image> Image::copy() const {
    auto image = make(m_size);
    for (const auto& rep : m_reps) {
        if (auto bitmap = std::dynamic_pointer_cast<BitmapImageRep>(rep))
            image->addRepresentation(bitmap->copy());
        else
            image->addRepresentation(rep);
    }
    return image;
}

std::string Image::description() const {
    std::string reps;
    for (size_t i = 0; i < m_reps.size(); ++i)
        reps += format(i ? ", %@" : "%@", m_reps[i]);
    return format("<Image %p Name=%@ Size=%@ Reps=(%@)>", static_cast<const void*>(this), m_name,
                  describe(m_size), reps);
}

} // namespace ns
