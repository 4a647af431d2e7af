// TlsVersionsIds.h: the template of the TLS versions and the controls that it holds. Also read by the
// resource compiler, so it holds preprocessor constants and nothing else.
#ifndef TLS_VERSIONS_IDS_H
#define TLS_VERSIONS_IDS_H

#define TLS_VERSIONS_DIALOG 3031
#define TLS_VERSIONS_LIST 3021
#define TLS_VERSIONS_FRAME 3022

#endif
