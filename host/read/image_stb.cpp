// SPDX-License-Identifier: MIT
#include "host/read/image_stb.h"

// The library is a header; only what is asked for becomes code.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_TGA
#define STBI_ONLY_PSD
#define STBI_NO_STDIO
#define STBI_NO_THREAD_LOCALS
#include <stb/stb_image.h>

namespace host {
namespace {

const stbi_uc *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const stbi_uc *>(bytes.constData());
}

} // namespace

QSize sizeByStb(const QByteArray &head)
{
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_memory(bytesOf(head), head.size(), &width, &height, &channels))
        return {};
    return {width, height};
}

QImage readByStb(const QByteArray &file)
{
    int width = 0, height = 0, channels = 0;
    stbi_uc *pixels =
        stbi_load_from_memory(bytesOf(file), file.size(), &width, &height, &channels, 4);
    if (!pixels)
        return {};
    return QImage(pixels, width, height, width * 4, QImage::Format_RGBA8888, stbi_image_free,
                  pixels);
}

} // namespace host
