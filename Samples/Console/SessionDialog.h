// SessionDialog.h: asks for a session, and for how to log in.
#pragma once

class CWnd;
class ConsoleSettings;
struct Session;

// Shows the session over a window. True: it is what the user wants now.
bool EditSession(ConsoleSettings& settings, CWnd& parent, Session& session, bool isNew);

// Its user and its password, which is not shown.
bool EditLogin(CWnd& parent, Session& session);
