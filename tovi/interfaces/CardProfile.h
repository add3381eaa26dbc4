#pragma once

#include "tovi/interfaces/Blob.h"

namespace PKCS15 {
struct PKCS15Objects;
}

namespace tovi {

struct PKCS15Object;

/// The application identifier of PKCS#15: RID A000000063 and "PKCS-15".
extern const Blob PKCS15_AID;
/// The usual path of the application below the master file, 5015, and the same from 3F00 on.
extern const Blob PKCS15_DF;
extern const Blob PKCS15_PATH;
/// The master file, 3F00.
extern const Blob PKCS15_MF;
/// EF(ODF) and EF(TokenInfo), below the application (PKCS#15 v1.1, 5.5).
extern const Blob PKCS15_EF_ODF;
extern const Blob PKCS15_EF_TOKEN_INFO;

/// What ProfileDFHandler::ReadFile takes: records with the tag of SEQUENCE, or any.
inline constexpr unsigned char SEQUENCE_TAG = 0x30;
inline constexpr unsigned char IGNORE_TAG = 0;

/// CK_TRUE and CK_FALSE as attribute values.
extern const Blob B_CK_TRUE;
extern const Blob B_CK_FALSE;

/// Sets `object.fid` from `object.path`: the last two octets of a path of at least two, else all
/// ones.
void getFID(PKCS15Object& object);

/// Writes the path of an ODF entry of choice `choice` (0 privateKeys ... 8 authObjects) that names
/// a file; false when the entry is of another choice or holds its objects itself.
bool getPath(const PKCS15::PKCS15Objects& entry, Blob& path, int choice);

}  // namespace tovi
