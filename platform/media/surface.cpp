#include "platform/media/surface.h"

std::size_t SurfaceBytes(Surface surface, int width, int height) {
    const std::size_t w = static_cast<std::size_t>(width);
    const std::size_t h = static_cast<std::size_t>(height);
    switch (surface) {
        case Surface::YV12:
            return w * h + 2 * ((w / 2) * (h / 2));
        case Surface::YUY2:
            return w * 2 * h;
        case Surface::RGB24:
            return (w * 3 + 3) / 4 * 4 * h;
    }
    return 0;
}
