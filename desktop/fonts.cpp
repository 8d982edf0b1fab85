// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/fonts.h"

#include <fontconfig/fontconfig.h>

namespace {

bool HasCache(FcConfig* config)
{
    FcStrList* folders = FcConfigGetCacheDirs(config);
    const bool hasOne = folders && FcStrListNext(folders) != nullptr;
    if (folders)
        FcStrListDone(folders);
    return hasOne;
}

} // namespace

void LoadFontConfiguration()
{
    FcConfig* config = FcConfigCreate();
    // Without a folder for caches every font would be read; the library's own way then adds one.
    const bool isUsable = config && FcConfigParseAndLoad(config, nullptr, FcTrue) && HasCache(config);
    if (isUsable && FcConfigSetCurrent(config))
        return; // the library owns it now
    if (config)
        FcConfigDestroy(config);
}
