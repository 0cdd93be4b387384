#include "core/image_digests.h"

#include <zlib.h>

#include "core/last_error.h"
#include "trelvane.h"

#ifdef _WIN32
#include <windows.h>

#include <bcrypt.h>
#else
#include <nettle/md5.h>
#include <nettle/sha1.h>
#endif

namespace {

constexpr size_t MD5_LENGTH = 16;
constexpr size_t SHA1_LENGTH = 20;

std::string HexDigits(const unsigned char* bytes, size_t size) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        text += DIGITS[bytes[i] >> 4];
        text += DIGITS[bytes[i] & 0xF];
    }
    return text;
}

#ifdef _WIN32
// One CNG hash of data into digest (length bytes).
bool CngDigest(LPCWSTR algorithm, const unsigned char* data, size_t size, unsigned char* digest, ULONG length) {
    BCRYPT_ALG_HANDLE provider = nullptr;
    if (!BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&provider, algorithm, nullptr, 0))) return false;
    BCRYPT_HASH_HANDLE hash = nullptr;
    bool ok = BCRYPT_SUCCESS(BCryptCreateHash(provider, &hash, nullptr, 0, nullptr, 0, 0));
    constexpr size_t CHUNK = 1 << 30;  // BCryptHashData takes 32-bit lengths
    for (size_t done = 0; ok && done < size; done += CHUNK) {
        const ULONG part = static_cast<ULONG>(size - done < CHUNK ? size - done : CHUNK);
        ok = BCRYPT_SUCCESS(BCryptHashData(hash, const_cast<PUCHAR>(data + done), part, 0));
    }
    ok = ok && BCRYPT_SUCCESS(BCryptFinishHash(hash, digest, length, 0));
    if (hash) BCryptDestroyHash(hash);
    BCryptCloseAlgorithmProvider(provider, 0);
    return ok;
}

bool PlatformDigests(const unsigned char* data, size_t size, unsigned char* md5, unsigned char* sha1) {
    return CngDigest(BCRYPT_MD5_ALGORITHM, data, size, md5, MD5_LENGTH) &&
           CngDigest(BCRYPT_SHA1_ALGORITHM, data, size, sha1, SHA1_LENGTH);
}
#else
bool PlatformDigests(const unsigned char* data, size_t size, unsigned char* md5, unsigned char* sha1) {
    md5_ctx md5State;
    md5_init(&md5State);
    md5_update(&md5State, size, data);
    md5_digest(&md5State, MD5_LENGTH, md5);
    sha1_ctx sha1State;
    sha1_init(&sha1State);
    sha1_update(&sha1State, size, data);
    sha1_digest(&sha1State, SHA1_LENGTH, sha1);
    return true;
}
#endif

}  // namespace

bool ComputeImageDigests(const unsigned char* data, size_t size, ImageDigests& digests) {
    unsigned char md5[MD5_LENGTH], sha1[SHA1_LENGTH];
    if (!PlatformDigests(data, size, md5, sha1)) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "MD5 and SHA-1");
    digests.crc32 = static_cast<uint32_t>(crc32_z(0, data, size));
    digests.md5 = HexDigits(md5, MD5_LENGTH);
    digests.sha1 = HexDigits(sha1, SHA1_LENGTH);
    return true;
}
