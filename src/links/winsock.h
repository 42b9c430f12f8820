// The thirteen socket calls that QLinkWinsock is written against, under their Windows names. On
// Windows they are the system's; elsewhere they use POSIX sockets and promise what follows.
#pragma once

#ifdef _WIN32

#include <winsock2.h>

namespace winsock {
using ::closesocket;
using ::connect;
using ::htons;
using ::inet_addr;
using ::ioctlsocket;
using ::recv;
using ::recvfrom;
using ::send;
using ::sendto;
using ::setsockopt;
using ::socket;
using ::WSACleanup;
using ::WSAStartup;
using WSADATA = ::WSADATA;
} // namespace winsock

#else

#include <cstdint>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#undef htons // a macro over the function of the same name, on some systems

using SOCKET = int;
constexpr SOCKET INVALID_SOCKET = -1;
constexpr int SOCKET_ERROR = -1;

// All calls give SOCKET_ERROR with errno on failure. None raises SIGPIPE, none ends early for a
// signal, and none waits longer for one.
namespace winsock {

struct WSADATA
{
};

// 0, or an error number for a version above 2.2. Each success is ended by one WSACleanup.
int WSAStartup(std::uint16_t version, WSADATA* data);
int WSACleanup();
// Startups that no cleanup has ended yet.
int startups_in_use();

// A handle, or INVALID_SOCKET.
SOCKET socket(int family, int type, int protocol);
// SO_SNDTIMEO, SO_RCVTIMEO: an int in milliseconds, 0 or more. A send, receive or connect gives up
// after that time; 0 gives up at once.
int setsockopt(SOCKET s, int level, int option, const char* value, int size);
std::uint16_t htons(std::uint16_t port);
// Network byte order; INADDR_NONE for a text that is no dotted address.
std::uint32_t inet_addr(const char* dotted);
// Gives up after SO_SNDTIMEO.
int connect(SOCKET s, const sockaddr* peer, int size);
int closesocket(SOCKET s);
// FIONREAD alone: the bytes readable at once; of a datagram socket, those of the next datagram.
int ioctlsocket(SOCKET s, unsigned long request, unsigned long* result);
// Bytes received, 0 at the peer's end.
int recv(SOCKET s, char* buffer, int size, int flags);
int recvfrom(SOCKET s, char* buffer, int size, int flags, sockaddr* from, int* from_size);
// Bytes that the system took within SO_SNDTIMEO; SOCKET_ERROR when it took none.
int send(SOCKET s, const char* buffer, int size, int flags);
int sendto(SOCKET s, const char* buffer, int size, int flags, const sockaddr* to, int to_size);

} // namespace winsock

#endif
