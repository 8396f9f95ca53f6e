#include "updates/qt/DownloadCrypto.h"

#include <openssl/evp.h>

#include <memory>
#include <vector>

namespace trotlet::updates::crypto {

// Generated for Trotlet's releases; the private half signs release archives and is kept
// away from this repository.
const std::string_view releasePublicKey = "nGQ0Ze6oqWa4w+WIaZcVWDS7oxVhXRI/a1CzF6tBNUw=";

namespace {

using PKey = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using MdCtx = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

std::optional<std::vector<unsigned char>> fromBase64(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0) return std::nullopt;
    std::vector<unsigned char> out(text.size() / 4 * 3);
    const int n = EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                  static_cast<int>(text.size()));
    if (n < 0) return std::nullopt;
    // EVP_DecodeBlock keeps the padding's zero bytes; drop one per "=".
    size_t size = static_cast<size_t>(n);
    for (size_t i = text.size(); i > 0 && text[i - 1] == '='; --i) --size;
    out.resize(size);
    return out;
}

std::string toBase64(const unsigned char* data, size_t size) {
    std::string out(4 * ((size + 2) / 3), '\0');
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()), data, static_cast<int>(size));
    return out;
}

}  // namespace

std::string sha256Hex(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha256(), nullptr);
    static const char* hex = "0123456789abcdef";
    std::string out;
    for (unsigned int i = 0; i < length; ++i) {
        out += hex[digest[i] >> 4];
        out += hex[digest[i] & 15];
    }
    return out;
}

bool verifyEd25519(std::string_view publicKeyBase64, std::string_view message,
                   std::string_view signatureBase64) {
    const auto key = fromBase64(publicKeyBase64);
    const auto signature = fromBase64(signatureBase64);
    if (!key || key->size() != 32 || !signature || signature->size() != 64) return false;
    PKey pkey(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, key->data(), key->size()),
              EVP_PKEY_free);
    MdCtx ctx(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    if (!pkey || !ctx) return false;
    if (EVP_DigestVerifyInit(ctx.get(), nullptr, nullptr, nullptr, pkey.get()) != 1) return false;
    return EVP_DigestVerify(ctx.get(), signature->data(), signature->size(),
                            reinterpret_cast<const unsigned char*>(message.data()),
                            message.size()) == 1;
}

std::optional<KeyPair> generateEd25519() {
    EVP_PKEY* raw = nullptr;
    std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> ctx(
        EVP_PKEY_CTX_new_id(EVP_PKEY_ED25519, nullptr), EVP_PKEY_CTX_free);
    if (!ctx || EVP_PKEY_keygen_init(ctx.get()) != 1 || EVP_PKEY_keygen(ctx.get(), &raw) != 1)
        return std::nullopt;
    PKey pkey(raw, EVP_PKEY_free);
    unsigned char pub[32], priv[32];
    size_t pubSize = sizeof pub, privSize = sizeof priv;
    if (EVP_PKEY_get_raw_public_key(pkey.get(), pub, &pubSize) != 1 ||
        EVP_PKEY_get_raw_private_key(pkey.get(), priv, &privSize) != 1)
        return std::nullopt;
    return KeyPair{toBase64(pub, pubSize), toBase64(priv, privSize)};
}

std::optional<std::string> signEd25519(std::string_view privateKeyBase64,
                                       std::string_view message) {
    const auto key = fromBase64(privateKeyBase64);
    if (!key || key->size() != 32) return std::nullopt;
    PKey pkey(EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, key->data(), key->size()),
              EVP_PKEY_free);
    MdCtx ctx(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    if (!pkey || !ctx || EVP_DigestSignInit(ctx.get(), nullptr, nullptr, nullptr, pkey.get()) != 1)
        return std::nullopt;
    unsigned char signature[64];
    size_t size = sizeof signature;
    if (EVP_DigestSign(ctx.get(), signature, &size,
                       reinterpret_cast<const unsigned char*>(message.data()), message.size()) != 1)
        return std::nullopt;
    return toBase64(signature, size);
}

}  // namespace trotlet::updates::crypto
