#pragma once

#include <optional>
#include <string>
#include <string_view>

// SHA-256 and Ed25519 through OpenSSL's libcrypto: how a downloaded update proves that it is
// the file the release key signed.
namespace trotlet::updates::crypto {

// Lowercase hex of the SHA-256 of `bytes`.
std::string sha256Hex(std::string_view bytes);

// Whether `signatureBase64` is an Ed25519 signature of `message` by the raw 32-byte public
// key given in base64. Any malformed input is simply "not verified".
bool verifyEd25519(std::string_view publicKeyBase64, std::string_view message,
                   std::string_view signatureBase64);

// A fresh key pair, both halves as base64 of their raw 32 bytes. For the self-checks and
// tests, which sign their own downloads; releases are signed with a key kept off this tree.
struct KeyPair {
    std::string publicKey;
    std::string privateKey;
};
std::optional<KeyPair> generateEd25519();
std::optional<std::string> signEd25519(std::string_view privateKeyBase64, std::string_view message);

// The public half of Trotlet's release key (base64 of the raw 32 bytes).
extern const std::string_view releasePublicKey;

}  // namespace trotlet::updates::crypto
