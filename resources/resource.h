/* Every number that Windows, tests or tools use to address a window, command or resource. A number keeps its
   meaning for ever. */
#pragma once

/* Resources */
#define IDI_KARDEL        201  /* program icon */
#define IDC_RESIZE_WIDTH  101  /* cursors */
#define IDC_RESIZE_HEIGHT 102
#define IDC_MOVING        103
#define IDC_BUTTON        104
#define IDW_ALARM         101  /* WAVE: the alarm sound */

/* fpost: parts of a note */
#define ID_LBL            101
#define ID_LBL2           102
#define ID_PIC            103
#define ID_NOTA           104
#define ID_TXTNOTA        105
#define ID_TXTTITLE       106
#define ID_PIC2           107
#define ID_PIC_TIME       108

/* fmsg: controls of the dialog */
#define ID_LBLMSG         201
#define ID_MICON          202
#define ID_BTN1           203
#define ID_BTN2           204
#define ID_BTNCANCEL      205
#define ID_FRAMSG         206
#define ID_LBLMAILTO      207
#define ID_LBLWEBURL      208
#define ID_DATA           221
#define ID_LBLDATE        222
#define ID_LBLHOURS       223
#define ID_HDATE          224
#define ID_HORE           225
#define ID_HMIN           226
#define ID_HSEC           227
#define ID_CBOREPEAT      228
#define ID_CBODAY         229
#define ID_LBLREPEAT      230
#define ID_CHKWEEK        231  /* chkWeek(0), Monday */
#define ID_CHKWEEK_LAST   237  /* chkWeek(6), Sunday */
#define ID_FRAWEEK        238
#define ID_CHKMUTE        239
#define ID_BTNOK          240
#define ID_FRAALARM       241
#define ID_LBLTIME        242
#define ID_LBLCOUNTDOWN   243

/* fpost: menu commands */
#define IDM_NEW           301
#define IDM_EDIT          302
#define IDM_COLOR         303
#define IDM_ALARM         304
#define IDM_REWHENPLAY    305
#define IDM_CLOSE         306
#define IDM_DELETE        307
#define IDM_DONTDELETE    308
#define IDM_TOPMOST       309
#define IDM_RESIZE        310
#define IDM_ICONIZE       311
#define IDM_HIDEALL       312
#define IDM_ICONIZEALL    313
#define IDM_EXIT          314

/* fTray: menu commands */
#define IDM_DYN           400  /* mnuDyn(0) .. */
#define IDM_DYN_LAST      413  /* .. mnuDyn(13) */
#define IDM_DYN2          500  /* mnuDyn2(0) .. */
#define IDM_DYN2_LAST     549  /* .. mnuDyn2(49) */

/* Timers */
#define IDT_ALARM         1039 /* of the tray window, every 500 ms: the countdown of every note that has one */
#define IDT_ICON          1042 /* of the tray window: one more try for the icon in a new task bar */
#define IDT_FLASH         1040 /* of a note, every 500 ms: its flashing while it rings */
#define IDT_MOVED         1042 /* of a note: another program moved it, and it has come to rest */
#define IDT_DRAFT         1041 /* of an editor: what is typed goes into the draft, a second after the first key */

/* Messages of the tray window */
#define WM_TRAYICON       1125 /* WM_USER + 101: the icon's mouse messages */
#define WM_SECONDSTART    1126 /* WM_USER + 102: a second start asks for the icon */
#define TRAYICON_ID       101
