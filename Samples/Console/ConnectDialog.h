// ConnectDialog.h: asks for a host and a port.
#pragma once

#include "Peer.h"

class CWnd;

// Shows what the peer is, over a window. True: it is what the user wants now.
bool AskForPeer(CWnd& parent, Peer& peer);
