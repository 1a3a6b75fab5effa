// SPDX-License-Identifier: MIT

// Stands in for a desktop's session manager, which asks every program to write
// everything before the session ends (X Session Management Protocol).
//
// Prints the value for $SESSION_MANAGER. Then it does what it reads: "save" asks the
// client for that, as if the session were to end, and "die" ends the client. Prints
// "registered", "saved" and "gone" as the client does so.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

namespace
{

SmsConn client = nullptr;
bool isEnding = false;

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

Status registerClient(SmsConn connection, SmPointer /*data*/, char *previousId)
{
    char *id = SmsGenerateClientID(connection);
    SmsRegisterClientReply(connection, id);
    std::free(id);
    std::free(previousId);
    client = connection;
    // The protocol's own welcome: a first save of what there is.
    SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
    say("registered");
    return 1;
}

void saveYourselfDone(SmsConn connection, SmPointer /*data*/, Bool /*success*/)
{
    if (isEnding)
        say("saved");
    else
        SmsSaveComplete(connection);
}

void saveYourselfPhase2(SmsConn connection, SmPointer /*data*/)
{
    SmsSaveYourselfPhase2(connection);
}

void interactRequest(SmsConn connection, SmPointer /*data*/, int /*dialogType*/)
{
    SmsInteract(connection);
}

void interactDone(SmsConn /*connection*/, SmPointer /*data*/, Bool /*cancel*/) { }

void saveYourselfRequest(SmsConn /*connection*/, SmPointer /*data*/, int /*type*/, Bool /*shutdown*/, int /*style*/,
    Bool /*fast*/, Bool /*global*/)
{
}

void closeConnection(SmsConn connection, SmPointer /*data*/, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    IceConn ice = SmsGetIceConnection(connection);
    SmsCleanUp(connection);
    IceSetShutdownNegotiation(ice, False);
    IceCloseConnection(ice);
    client = nullptr;
    say("gone");
}

void setProperties(SmsConn /*connection*/, SmPointer /*data*/, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

void deleteProperties(SmsConn /*connection*/, SmPointer /*data*/, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}

void getProperties(SmsConn connection, SmPointer /*data*/)
{
    SmsReturnProperties(connection, 0, nullptr);
}

Status newClient(
    SmsConn /*connection*/, SmPointer /*data*/, unsigned long *mask, SmsCallbacks *callbacks, char ** /*reason*/)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
        | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask
        | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask
        | SmsGetPropertiesProcMask;
    callbacks->register_client = { registerClient, nullptr };
    callbacks->interact_request = { interactRequest, nullptr };
    callbacks->interact_done = { interactDone, nullptr };
    callbacks->save_yourself_request = { saveYourselfRequest, nullptr };
    callbacks->save_yourself_phase2_request = { saveYourselfPhase2, nullptr };
    callbacks->save_yourself_done = { saveYourselfDone, nullptr };
    callbacks->close_connection = { closeConnection, nullptr };
    callbacks->set_properties = { setProperties, nullptr };
    callbacks->delete_properties = { deleteProperties, nullptr };
    callbacks->get_properties = { getProperties, nullptr };
    return 1;
}

// Everybody on this machine may connect; it is a test's.
Bool accept(char * /*host*/)
{
    return True;
}

void obey(const std::string &command)
{
    if (!client)
        return;
    if (command == "save") {
        isEnding = true;
        SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
    } else if (command == "die") {
        SmsDie(client);
    }
}

} // namespace

int main()
{
    std::array<char, 256> failure {};
    char vendor[] = "test";
    char release[] = "1";
    int count = 0;
    IceListenObj *listeners = nullptr;
    if (!SmsInitialize(vendor, release, newClient, nullptr, accept, failure.size(), failure.data())
        || !IceListenForConnections(&count, &listeners, failure.size(), failure.data())) {
        std::fprintf(stderr, "no session manager: %s\n", failure.data());
        return 1;
    }
    for (int i = 0; i < count; ++i)
        IceSetHostBasedAuthProc(listeners[i], accept);
    char *address = IceComposeNetworkIdList(count, listeners);
    say(address);
    std::free(address);

    std::vector<IceConn> connections;
    std::string input;
    for (;;) {
        std::vector<pollfd> waiting { { STDIN_FILENO, POLLIN, 0 } };
        for (int i = 0; i < count; ++i)
            waiting.push_back({ IceGetListenConnectionNumber(listeners[i]), POLLIN, 0 });
        for (IceConn connection : connections)
            waiting.push_back({ IceConnectionNumber(connection), POLLIN, 0 });
        if (poll(waiting.data(), waiting.size(), -1) < 0)
            return 1;

        const std::size_t firstConnection = 1 + static_cast<std::size_t>(count);
        std::vector<IceConn> open;
        for (std::size_t i = 0; i < connections.size(); ++i) {
            const bool isReady = waiting[firstConnection + i].revents != 0;
            const bool hadClient = client != nullptr;
            const bool isBroken
                = isReady && IceProcessMessages(connections[i], nullptr, nullptr) != IceProcessMessagesSuccess;
            if (isBroken && client)
                client = nullptr;
            if (isBroken || (hadClient && !client))
                continue;
            open.push_back(connections[i]);
        }
        connections = open;
        for (int i = 0; i < count; ++i) {
            if (waiting[1 + static_cast<std::size_t>(i)].revents == 0)
                continue;
            IceAcceptStatus status {};
            if (IceConn connection = IceAcceptConnection(listeners[i], &status))
                connections.push_back(connection);
        }
        if (waiting[0].revents != 0) {
            std::array<char, 256> bytes {};
            const ssize_t length = read(STDIN_FILENO, bytes.data(), bytes.size());
            if (length <= 0)
                return 0;
            input.append(bytes.data(), static_cast<std::size_t>(length));
            for (std::size_t end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
                obey(input.substr(0, end));
                input.erase(0, end + 1);
            }
        }
    }
}
