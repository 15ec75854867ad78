"""A desktop's session manager, as small as the protocol allows: it registers one client and ends its session.

Speaks the X session management protocol through the libraries libSM and libICE, which Qt's X11 platform links too.
"""
import ctypes
import ctypes.util
import select
import threading

SAVE_GLOBAL, SAVE_LOCAL = 0, 1
INTERACT_NONE, INTERACT_ANY = 0, 2
PROCESS_SUCCESS = 0
CONNECT_PENDING, CONNECT_ACCEPTED = 0, 1

pointer = ctypes.c_void_p
status = ctypes.c_int


def library(name):
    """The library, or nothing."""
    found = ctypes.util.find_library(name)
    return ctypes.CDLL(found) if found else None


ICE = library("ICE")
SM = library("SM")


def callback(result, *arguments):
    return ctypes.CFUNCTYPE(result, *arguments)


class Callback(ctypes.Structure):
    _fields_ = [("function", pointer), ("data", pointer)]


# In the order of the library's structure of callbacks.
CALLBACKS = {
    "register_client": callback(status, pointer, pointer, ctypes.c_char_p),
    "interact_request": callback(None, pointer, pointer, ctypes.c_int),
    "interact_done": callback(None, pointer, pointer, ctypes.c_int),
    "save_yourself_request": callback(None, pointer, pointer, ctypes.c_int, ctypes.c_int, ctypes.c_int, ctypes.c_int,
                                      ctypes.c_int),
    "save_yourself_phase2_request": callback(None, pointer, pointer),
    "save_yourself_done": callback(None, pointer, pointer, ctypes.c_int),
    "close_connection": callback(None, pointer, pointer, ctypes.c_int, pointer),
    "set_properties": callback(None, pointer, pointer, ctypes.c_int, pointer),
    "delete_properties": callback(None, pointer, pointer, ctypes.c_int, pointer),
    "get_properties": callback(None, pointer, pointer),
}
NEW_CLIENT = callback(status, pointer, pointer, ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(Callback), pointer)
HOST_AUTH = callback(ctypes.c_int, ctypes.c_char_p)


def available():
    return ICE is not None and SM is not None


class SessionManager:
    """Runs in a thread of its own. `events` grows by what the client does: "registered", "saved" (its state at the
    start), "asks" (may it talk to the person?), "asked" or "cancelled" (how that ended), "done", "gone"."""

    def __init__(self):
        for function in (ICE.IceAcceptConnection, ICE.IceComposeNetworkIdList, SM.SmsGetIceConnection,
                         SM.SmsGenerateClientID):
            function.restype = pointer
        self.events = []
        self.client = None
        self.starting = False
        self.wanted = []  # what the other thread asks for
        self.handlers = {name: kind(getattr(self, "on_" + name, self.ignore)) for name, kind in CALLBACKS.items()}
        self.new_client = NEW_CLIENT(self.accept_client)
        self.allow = HOST_AUTH(lambda host: 1)
        self.broken = callback(None, pointer)(lambda connection: None)  # the library's own handler ends the process
        ICE.IceSetIOErrorHandler(self.broken)
        error = ctypes.create_string_buffer(256)
        if not SM.SmsInitialize(b"test", b"1", self.new_client, None, self.allow, 256, error):
            raise RuntimeError(error.value.decode())
        count = ctypes.c_int()
        self.listeners = ctypes.POINTER(pointer)()
        if not ICE.IceListenForConnections(ctypes.byref(count), ctypes.byref(self.listeners), 256, error):
            raise RuntimeError(error.value.decode())
        self.sockets = {}
        for i in range(count.value):
            listener = pointer(self.listeners[i])
            ICE.IceSetHostBasedAuthProc(listener, self.allow)
            self.sockets[ICE.IceGetListenConnectionNumber(listener)] = listener
        self.address = ctypes.string_at(ICE.IceComposeNetworkIdList(count, self.listeners)).decode()
        self.connections = {}
        self.running = True
        self.thread = threading.Thread(target=self.run, daemon=True)
        self.thread.start()

    def end_session(self):
        """The person logs out: the client is to save, may ask, and will be ended."""
        self.wanted.append(lambda: SM.SmsSaveYourself(self.client, SAVE_GLOBAL, 1, INTERACT_ANY, 0))

    def close(self):
        self.running = False
        self.thread.join(5)

    def run(self):
        while self.running:
            while self.wanted:
                self.wanted.pop(0)()
                ICE.IceFlush(pointer(SM.SmsGetIceConnection(self.client)))
            readable = select.select(list(self.sockets) + list(self.connections), [], [], 0.02)[0]
            for descriptor in readable:
                if descriptor in self.sockets:
                    self.accept_connection(self.sockets[descriptor])
                elif ICE.IceProcessMessages(self.connections[descriptor], None, None) != PROCESS_SUCCESS:
                    del self.connections[descriptor]
                    self.events.append("gone")

    def accept_connection(self, listener):
        result = ctypes.c_int()
        connection = pointer(ICE.IceAcceptConnection(listener, ctypes.byref(result)))
        while ICE.IceConnectionStatus(connection) == CONNECT_PENDING:
            ICE.IceProcessMessages(connection, None, None)
        if ICE.IceConnectionStatus(connection) == CONNECT_ACCEPTED:
            self.connections[ICE.IceConnectionNumber(connection)] = connection

    def accept_client(self, client, _data, mask, callbacks, _reason):
        self.client = pointer(client)
        mask[0] = 0x3FF  # all of them
        for i, name in enumerate(CALLBACKS):
            callbacks[i].function = ctypes.cast(self.handlers[name], pointer)
        return 1

    @staticmethod
    def ignore(*_arguments):
        return None

    def on_register_client(self, client, _data, _previous):
        SM.SmsRegisterClientReply(pointer(client), pointer(SM.SmsGenerateClientID(pointer(client))))
        self.events.append("registered")
        self.starting = True
        SM.SmsSaveYourself(pointer(client), SAVE_LOCAL, 0, INTERACT_NONE, 0)
        return 1

    def on_interact_request(self, client, _data, _kind):
        self.events.append("asks")
        SM.SmsInteract(pointer(client))

    def on_interact_done(self, client, _data, cancels):
        self.events.append("cancelled" if cancels else "asked")
        if cancels:
            SM.SmsShutdownCancelled(pointer(client))

    def on_save_yourself_phase2_request(self, client, _data):
        SM.SmsSaveYourselfPhase2(pointer(client))

    def on_save_yourself_done(self, client, _data, _success):
        if self.starting:
            self.starting = False
            self.events.append("saved")
            SM.SmsSaveComplete(pointer(client))
        else:
            self.events.append("done")

    def on_close_connection(self, client, _data, _count, _reasons):
        SM.SmsCleanUp(pointer(client))
