/* A VISA program in C, written against the public signatures alone: lists, opens, asks, reads a
   block, sets attributes and closes. Ends with 0 when everything was as it should be. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef int32_t ViStatus;
typedef uint32_t ViUInt32;
typedef uint16_t ViUInt16;
typedef uintptr_t ViAttrState;
typedef ViUInt32 ViSession;
typedef ViUInt32 ViObject;
typedef ViUInt32 ViAttr;

ViStatus viOpenDefaultRM(ViSession *manager);
ViStatus viFindRsrc(ViSession manager, const char *expression, ViUInt32 *list, ViUInt32 *count,
                    char name[]);
ViStatus viFindNext(ViUInt32 list, char name[]);
ViStatus viParseRsrc(ViSession manager, const char *name, ViUInt16 *type, ViUInt16 *number);
ViStatus viParseRsrcEx(ViSession manager, const char *name, ViUInt16 *type, ViUInt16 *number,
                       char class_[], char expanded[], char alias[]);
ViStatus viOpen(ViSession manager, const char *name, ViUInt32 mode, ViUInt32 timeout,
                ViSession *session);
ViStatus viClose(ViObject object);
ViStatus viGetAttribute(ViObject object, ViAttr attribute, void *value);
ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value);
ViStatus viStatusDesc(ViObject object, ViStatus status, char text[]);
ViStatus viRead(ViSession session, unsigned char *buffer, ViUInt32 size, ViUInt32 *count);
ViStatus viWrite(ViSession session, const unsigned char *buffer, ViUInt32 size, ViUInt32 *count);
ViStatus viClear(ViSession session);
ViStatus viReadSTB(ViSession session, ViUInt16 *status);
ViStatus viLock(ViSession session, ViUInt32 type, ViUInt32 timeout, const char *key, char *access);
ViStatus viUnlock(ViSession session);
ViStatus viDisableEvent(ViSession session, ViUInt32 type, ViUInt16 mechanism);

static int mistakes = 0;

#define EXPECT(condition)                                         \
  do {                                                            \
    if (!(condition)) {                                           \
      (void)fprintf(stderr, "line %d: %s\n", __LINE__, #condition); \
      ++mistakes;                                                 \
    }                                                             \
  } while (0)

static void say(ViSession session, const char *text) {
  ViUInt32 count = 0;
  EXPECT(viWrite(session, (const unsigned char *)text, (ViUInt32)strlen(text), &count) == 0);
  EXPECT(count == strlen(text));
}

static void names(ViSession manager, char name[256]) {
  char class_[256] = "";
  char expanded[256] = "";
  char alias[256] = "x";
  ViUInt16 type = 0;
  ViUInt16 number = 9;
  ViUInt32 list = 0;
  ViUInt32 count = 0;
  EXPECT(viFindRsrc(manager, "?*INSTR", &list, &count, name) == 0);
  EXPECT(count == 2);
  EXPECT(viFindNext(list, name) == 0);
  EXPECT(viClose(list) == 0);
  EXPECT(viParseRsrc(manager, name, &type, &number) == 0);
  EXPECT(type == 7 && number == 0);
  EXPECT(viParseRsrcEx(manager, "usb::0x5a41::0x0200::sim00001", &type, &number, class_, expanded,
                       alias) == 0);
  EXPECT(strcmp(class_, "INSTR") == 0 && strcmp(expanded, name) == 0 && strcmp(alias, "") == 0);
  EXPECT(viParseRsrc(manager, "ASRL12", &type, &number) == 0);
  EXPECT(type == 4 && number == 12);
  EXPECT((ViUInt32)viParseRsrc(manager, "nonsense", &type, &number) == 0xBFFF0012U);
}

static void attributes(ViSession session) {
  char text[256] = "";
  ViUInt16 number = 0;
  ViUInt32 timeout = 0;
  EXPECT(viGetAttribute(session, 0xBFFF0001U, text) == 0 && strcmp(text, "INSTR") == 0);
  EXPECT(viGetAttribute(session, 0xBFFF01A0U, text) == 0 && strcmp(text, "SIM00001") == 0);
  EXPECT(viGetAttribute(session, 0x3FFF0171U, &number) == 0 && number == 7);
  EXPECT(viGetAttribute(session, 0x3FFF00D9U, &number) == 0 && number == 0x5A41);
  EXPECT(viSetAttribute(session, 0x3FFF001AU, 1234) == 0);
  EXPECT(viGetAttribute(session, 0x3FFF001AU, &timeout) == 0 && timeout == 1234);
  EXPECT((ViUInt32)viSetAttribute(session, 0x3FFF0171U, 1) == 0xBFFF001FU);
  EXPECT(viStatusDesc(session, (ViStatus)0xBFFF0015U, text) == 0 && strstr(text, "time-out"));
  EXPECT(viStatusDesc(session, 77, text) == 0x3FFF0085 && strlen(text) > 0);
}

static void exchanges(ViSession session) {
  static unsigned char buffer[300000];
  ViUInt16 status = 0;
  ViUInt32 count = 0;
  say(session, "*IDN?\n");
  EXPECT(viReadSTB(session, &status) == 0 && (status & 0x10) != 0);
  EXPECT(viRead(session, buffer, sizeof buffer, &count) == 0);
  EXPECT(count == 46 && memcmp(buffer, "Ostbrook", 8) == 0);
  EXPECT(viReadSTB(session, &status) == 0 && status == 0);
  say(session, ":DISP:COL?\n");
  EXPECT(viRead(session, buffer, sizeof buffer, &count) == 0);
  EXPECT(count == 230463 && memcmp(buffer, "#6230454BM", 10) == 0);
  say(session, ":CHAN?\n");
  EXPECT(viClear(session) == 0);
  EXPECT(viSetAttribute(session, 0x3FFF001AU, 10) == 0);
  EXPECT((ViUInt32)viRead(session, buffer, sizeof buffer, &count) == 0xBFFF0015U && count == 0);
}

static void locks(ViSession manager, const char *name, ViSession session) {
  ViSession other = 0;
  ViUInt32 count = 0;
  EXPECT(viLock(session, 1, 10, NULL, NULL) == 0);
  EXPECT(viLock(session, 1, 10, NULL, NULL) == 0x3FFF009A);
  EXPECT(viOpen(manager, name, 0, 0, &other) == 0);
  EXPECT((ViUInt32)viWrite(other, (const unsigned char *)"\n", 1, &count) == 0xBFFF000FU);
  EXPECT((ViUInt32)viLock(other, 1, 10, NULL, NULL) == 0xBFFF000FU);
  EXPECT(viUnlock(session) == 0x3FFF009A);
  EXPECT(viUnlock(session) == 0);
  EXPECT((ViUInt32)viUnlock(session) == 0xBFFF009CU);
  EXPECT(viWrite(other, (const unsigned char *)"\n", 1, &count) == 0);
  EXPECT(viClose(other) == 0);
}

int main(void) {
  char name[256] = "";
  ViSession manager = 0;
  ViSession session = 0;
  EXPECT(viOpenDefaultRM(&manager) == 0);
  names(manager, name);
  EXPECT(viOpen(manager, name, 0, 1000, &session) == 0);
  attributes(session);
  exchanges(session);
  locks(manager, name, session);
  EXPECT(viDisableEvent(session, 0x3FFF7FFFU, 0xFFFF) == 0);
  EXPECT(viClose(session) == 0);
  EXPECT(viClose(manager) == 0);
  return mistakes == 0 ? 0 : 1;
}
