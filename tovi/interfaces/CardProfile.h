#pragma once

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace PKCS15 {
struct PKCS15Objects;
}

namespace tovi {

struct PKCS15Object;

/// The application identifier of PKCS#15: RID A000000063 and "PKCS-15".
TOVI_API extern const Blob PKCS15_AID;
/// The usual path of the application below the master file, 5015, and the same from 3F00 on.
TOVI_API extern const Blob PKCS15_DF;
TOVI_API extern const Blob PKCS15_PATH;
/// The master file, 3F00.
TOVI_API extern const Blob PKCS15_MF;
/// EF(ODF) and EF(TokenInfo), below the application (PKCS#15 v1.1, 5.5).
TOVI_API extern const Blob PKCS15_EF_ODF;
TOVI_API extern const Blob PKCS15_EF_TOKEN_INFO;

/// What ProfileDFHandler::ReadFile takes: records with the tag of SEQUENCE, or any.
inline constexpr unsigned char SEQUENCE_TAG = 0x30;
inline constexpr unsigned char IGNORE_TAG = 0;

/// CK_TRUE and CK_FALSE as attribute values.
TOVI_API extern const Blob B_CK_TRUE;
TOVI_API extern const Blob B_CK_FALSE;

/// Sets `object.fid` from `object.path`: the last two octets of a path of at least two, else all
/// ones.
TOVI_API void getFID(PKCS15Object& object);

/// Writes the path of an ODF entry of choice `choice` (0 privateKeys ... 8 authObjects) that names
/// a file; false when the entry is of another choice or holds its objects itself.
TOVI_API bool getPath(const PKCS15::PKCS15Objects& entry, Blob& path, int choice);

}  // namespace tovi
