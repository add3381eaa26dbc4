#pragma once

/// All types of the module PKCS-15.
#include "tovi/pkcs15/Authentication.h"
#include "tovi/pkcs15/Certificate.h"
#include "tovi/pkcs15/DataObject.h"
#include "tovi/pkcs15/Directory.h"
#include "tovi/pkcs15/PKCS15Objects.h"
#include "tovi/pkcs15/PrivateKey.h"
#include "tovi/pkcs15/PublicKey.h"
#include "tovi/pkcs15/SecretKey.h"
#include "tovi/pkcs15/SoftToken.h"
#include "tovi/pkcs15/TokenInfo.h"
