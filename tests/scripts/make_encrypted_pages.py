#!/usr/bin/env python3
"""Writes the encrypted page fixtures of tests/mdb/OfficePageCipherTest.cpp.

Each fixture is a three-page image of an Access 2007+ file: page 0 with the database header
(the masked encoding key and the encryption information at 0x299), then pages 1 and 2 whose
plain bytes are (i * 7 + page * 13) & 0xff, encrypted the way MS-OFFCRYPTO describes for the
scheme. The keys are derived here with Python's hashlib, RC4 is written out below and AES comes
from the `cryptography` package, so the fixtures do not share code with the reader under test.
Run once: python3 make_encrypted_pages.py OUTPUT_FOLDER
"""
import base64
import hashlib
import os
import struct
import sys

from cryptography.hazmat.primitives.ciphers import Cipher, algorithms, modes

PAGE = 4096
ENCODING_KEY = 0xA1B2C3D4


def rc4(key, data):
    s = list(range(256))
    j = 0
    for i in range(256):
        j = (j + s[i] + key[i % len(key)]) % 256
        s[i], s[j] = s[j], s[i]
    i = j = 0
    out = bytearray()
    for b in data:
        i = (i + 1) % 256
        j = (j + s[i]) % 256
        s[i], s[j] = s[j], s[i]
        out.append(b ^ s[(s[i] + s[j]) % 256])
    return bytes(out)


def aes_ecb(key, data):
    enc = Cipher(algorithms.AES(key), modes.ECB()).encryptor()
    return enc.update(data) + enc.finalize()


def aes_cbc(key, iv, data):
    enc = Cipher(algorithms.AES(key), modes.CBC(iv)).encryptor()
    return enc.update(data) + enc.finalize()


def plain_page(number):
    return bytes((i * 7 + number * 13) & 0xFF for i in range(PAGE))


def block(number):
    return struct.pack("<I", ENCODING_KEY ^ number)


def header_page(info):
    page = bytearray(PAGE)
    page[0:4] = b"\x00\x01\x00\x00"
    page[4:20] = b"Standard ACE DB\x00"
    page[0x14] = 3
    masked = bytearray(128)
    masked[0x3E - 0x18:0x42 - 0x18] = struct.pack("<I", ENCODING_KEY)
    page[0x18:0x18 + 128] = rc4(bytes([0xC7, 0xDA, 0x39, 0x6B]), bytes(masked))
    page[0x299:0x29B] = struct.pack("<H", len(info))
    page[0x29B:0x29B + len(info)] = info
    return bytes(page)


def utf16(password):
    return password.encode("utf-16-le")


def crypto_api_info(version, flags, alg, key_bits, csp, salt, enc_verifier, verifier_hash_size, enc_hash):
    csp_bytes = (csp + "\0").encode("utf-16-le")
    header = struct.pack("<8I", flags, 0, alg, 0x8004, key_bits, 1, 0, 0) + csp_bytes
    return (struct.pack("<HHI", version[0], version[1], flags) + struct.pack("<I", len(header)) + header +
            struct.pack("<I", 16) + salt + enc_verifier + struct.pack("<I", verifier_hash_size) + enc_hash)


def rc4_cryptoapi(password, key_bits, csp):
    salt = bytes(range(16))
    verifier = bytes(range(100, 116))
    base = hashlib.sha1(salt + utf16(password)).digest()

    def key(b):
        k = hashlib.sha1(base + b).digest()[:key_bits // 8]
        return k + bytes(16 - len(k)) if key_bits == 40 else k

    stream = rc4(key(struct.pack("<I", 0)), verifier + hashlib.sha1(verifier).digest())
    info = crypto_api_info((4, 2), 0x04, 0x6801, key_bits, csp, salt, stream[:16], 20, stream[16:])
    pages = [rc4(key(block(n)), plain_page(n)) for n in (1, 2)]
    return info, pages


def standard(password, alg, key_bits, flags, rounds):
    salt = bytes(range(32, 48))
    verifier = bytes(range(200, 216))
    h = hashlib.sha1(salt + utf16(password)).digest()
    for i in range(rounds):
        h = hashlib.sha1(struct.pack("<I", i) + h).digest()

    def key(b):
        final = hashlib.sha1(h + b).digest()
        x1 = hashlib.sha1(bytes(a ^ 0x36 for a in final) + bytes([0x36]) * (64 - len(final))).digest()
        x2 = hashlib.sha1(bytes(a ^ 0x5C for a in final) + bytes([0x5C]) * (64 - len(final))).digest()
        return (x1 + x2)[:key_bits // 8]

    k0 = key(struct.pack("<I", 0))
    verifier_hash = hashlib.sha1(verifier).digest() + bytes(12)
    info = crypto_api_info((4, 2), flags, alg, key_bits, "Microsoft Enhanced RSA and AES Cryptographic Provider",
                           salt, aes_ecb(k0, verifier), 20, aes_ecb(k0, verifier_hash))
    pages = [aes_ecb(key(block(n)), plain_page(n)) for n in (1, 2)]
    return info, pages


def agile(password, spin):
    key_salt = bytes(range(48, 64))
    data_salt = bytes(range(64, 80))
    secret = bytes(range(1, 33))  # the intermediate key that encrypts the pages
    verifier = bytes(range(150, 166))
    h = hashlib.sha512(key_salt + utf16(password)).digest()
    for i in range(spin):
        h = hashlib.sha512(struct.pack("<I", i) + h).digest()

    def key(b):
        return hashlib.sha512(h + b).digest()[:32]

    enc_input = aes_cbc(key(bytes([0xFE, 0xA7, 0xD2, 0x76, 0x3B, 0x4B, 0x9E, 0x79])), key_salt, verifier)
    enc_value = aes_cbc(key(bytes([0xD7, 0xAA, 0x0F, 0x6D, 0x30, 0x61, 0x34, 0x4E])), key_salt,
                        hashlib.sha512(verifier).digest())
    enc_key = aes_cbc(key(bytes([0x14, 0x6E, 0x0B, 0xE7, 0xAB, 0xAC, 0xD0, 0xD6])), key_salt, secret)
    b64 = lambda b: base64.b64encode(b).decode()
    xml = ('<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\r\n'
           '<encryption xmlns="http://schemas.microsoft.com/office/2006/encryption" '
           'xmlns:p="http://schemas.microsoft.com/office/2006/keyEncryptor/password">'
           f'<keyData saltSize="16" blockSize="16" keyBits="256" hashSize="64" cipherAlgorithm="AES" '
           f'cipherChaining="ChainingModeCBC" hashAlgorithm="SHA512" saltValue="{b64(data_salt)}"/>'
           '<keyEncryptors><keyEncryptor uri="http://schemas.microsoft.com/office/2006/keyEncryptor/password">'
           f'<p:encryptedKey spinCount="{spin}" saltSize="16" blockSize="16" keyBits="256" hashSize="64" '
           f'cipherAlgorithm="AES" cipherChaining="ChainingModeCBC" hashAlgorithm="SHA512" '
           f'saltValue="{b64(key_salt)}" encryptedVerifierHashInput="{b64(enc_input)}" '
           f'encryptedVerifierHashValue="{b64(enc_value)}" encryptedKeyValue="{b64(enc_key)}"/>'
           '</keyEncryptor></keyEncryptors></encryption>')
    info = struct.pack("<HHI", 4, 4, 0x40) + xml.encode()
    pages = []
    for n in (1, 2):
        iv = hashlib.sha512(data_salt + block(n)).digest()[:16]
        pages.append(aes_cbc(secret, iv, plain_page(n)))
    return info, pages


def office_rc4(password):
    salt = bytes(range(80, 96))
    verifier = bytes(range(10, 26))
    fill = hashlib.md5(utf16(password)).digest()[:5] + salt
    base = hashlib.md5(fill * 16).digest()[:5]

    def key(b):
        return hashlib.md5(base + b).digest()

    stream = rc4(key(struct.pack("<I", 0)), verifier + hashlib.md5(verifier).digest())
    info = struct.pack("<HH", 1, 1) + salt + stream[:16] + stream[16:]
    pages = [rc4(key(block(n)), plain_page(n)) for n in (1, 2)]
    return info, pages


def main():
    out = sys.argv[1]
    fixtures = {
        "rc4-cryptoapi-40.bin": rc4_cryptoapi("Test123", 40, "Microsoft Base Cryptographic Provider v1.0"),
        "rc4-cryptoapi-128.bin": rc4_cryptoapi("pässwörd", 128, "Microsoft Enhanced Cryptographic Provider v1.0"),
        "ecma-standard.bin": standard("secret", 0x660E, 128, 0x24, 50000),
        "non-standard.bin": standard("password", 0x6610, 256, 0x0C, 0),
        "agile.bin": agile("1234", 1000),
        "office-rc4.bin": office_rc4("tika"),
    }
    for name, (info, pages) in fixtures.items():
        with open(os.path.join(out, name), "wb") as f:
            f.write(header_page(info) + b"".join(pages))


if __name__ == "__main__":
    main()
