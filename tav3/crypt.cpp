// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/crypt.h"

#include <crypt.h>
#include <cstring>

char* crypt_make_salt()
{
    static char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    return crypt_gensalt_rn(nullptr, 0, nullptr, 0, setting, sizeof setting);
}

char* crypt_passwd(const char* key, const char* setting)
{
    static char hash[CRYPT_OUTPUT_SIZE];
    struct crypt_data work = {};
    // A failure is null or a text that begins with '*', which is no hash.
    const char* result = crypt_r(key, setting, &work);
    const bool isHash = result && result[0] != '*';
    if (isHash)
        memcpy(hash, result, strnlen(result, sizeof hash - 1) + 1);
    explicit_bzero(&work, sizeof work); // holds what the key can be found from
    return isHash ? hash : nullptr;
}
