// What an extension and the host say to each other, and the connection between them.

// Requests

/** An input of a page, with what the coffer has for it. All members are texts, empty if unknown. */
export interface Input {
  name: string;
  value: string;
  /** As in HTML: "text", "email", "password" … */
  type: string;
  id: string;
  /** Not empty if the input can't be changed. */
  readonly: string;
  /** What the page calls the input. */
  context: string;
  /** The form that the input belongs to; the same text for all inputs of one form. */
  form_context: string;
  /** What the agent thinks the input is for, "user" or "password" for example; empty if nothing. */
  dbSchema: string;
  /** What belongs in the input. */
  dbvalue: string;
}

/** The forms that a page shows. Members may be missing, and null empties a text. */
export interface Page {
  /** Comes back unchanged with whatever answers this page. */
  sender?: string;
  /** The page's address. */
  source?: string | null;
  title?: string | null;
  context?: string | null;
  user_state?: string | null;
  document_state?: string | null;
  before_url?: string | null;
  after_url?: string | null;
  source_event?: string | null;
  source_context?: string | null;
  click_source?: string | null;
  submit_source?: string | null;
  fHasMultipleForms?: 0 | 1;
  fIsPartiallyFilled?: 0 | 1;
  navigate_login?: string | null;
  /** The host keeps the first 65,536. */
  inputs?: Partial<Input>[];
}

export type PageMethod = "get-info-for-page" | "save-info-from-page" | "drop-down";

export type CommandMethod =
  | "open-coffer"
  | "configure-coffer"
  | "open-settings"
  | "get-settings"
  | "lock-coffer"
  | "unlock-coffer";

export type Request =
  | { method: Exclude<PageMethod, "drop-down">; data: Page }
  | { method: "drop-down"; data: Page | null }
  | { method: CommandMethod };

// Notifications

/** What the agent knows of a page. Its other properties have the message's names, with hyphens. */
export interface Website {
  sender: string;
  source?: string | null;
  "navigate-login"?: string | null;
  /** Whose login there is for the page, filled or not; only from agents that tell. */
  "known-login"?: string | null;
  inputs: Input[];
  dbItems: [];
  [property: string]: string | null | undefined | Input[];
}

/** Settings are texts, even those that look like numbers or booleans. */
export type Settings = Record<string, string | null>;

export interface CofferData {
  fUpdate: number;
  flags: number;
  agPid: number;
  agStatus: number;
  dbStatus: number;
  settings: Settings;
  default_settings: Settings;
}

/** An object with one member, whose name says what it is. */
export type Notification =
  | { coffer_info_update: Website }
  | { page_input_update: Website }
  | { navigate_login: Website }
  | { "coffer-open-url": { url: string | null; uuid: string | null } }
  | { "coffer-init-data": CofferData }
  | { "coffer-set-settings": Settings };

// Envelopes

export interface Envelope {
  id: string;
  fragment: number | "final";
  msg: string;
}

export interface ReplyEnvelope {
  reply: "success";
  id: string;
  fragment: number | "final";
  data: string;
}

/** The longest envelope that the host reads, in bytes of JSON. */
export const largestEnvelope: number;

/** The longest message that the host takes, in characters of base64. */
export const largestMessage: number;

export function encodeMessage(message: unknown): string;

/** Throws if the text isn't JSON in base64. */
export function decodeMessage(base64: string): unknown;

/**
 * The envelopes of a message, in the order in which they have to go out. A long id is shortened. Throws
 * a RangeError for an empty id and for a message that the host would drop.
 */
export function envelopesOf(message: Request, id: string): Iterable<Envelope>;

/** Joins the pieces of the host's messages; several messages may be unfinished at a time. */
export class ReplyJoiner {
  /** What unfinished messages take: their characters, and a cost for each piece and id. */
  get held(): number;
  /** The message that this envelope completes, if it does. Throws if the joined text isn't a message. */
  add(envelope: ReplyEnvelope): Notification | undefined;
  clear(): void;
}

// The connection

interface BrowserEvent<Listener> {
  addListener(listener: Listener): void;
}

/** The part of the browser's port that is needed. */
export interface NativePort {
  postMessage(envelope: Envelope): void;
  disconnect(): void;
  onMessage: BrowserEvent<(envelope: any) => void>;
  onDisconnect: BrowserEvent<(port: any) => void>;
  /** Firefox has the reason of a disconnection here. */
  error?: { message?: string } | null;
}

/** The part of `chrome` or `browser` that is needed. */
export interface NativeApi {
  runtime: {
    connectNative(name: string): NativePort;
    /** Chromium has the reason of a disconnection here. */
    lastError?: { message?: string } | null;
  };
}

/** A connection that reconnects by itself when the host ends. */
export class HostPort {
  /**
   * Connects at once. `onChange` gets whether there is a connection each time that one came or went, and
   * the browser's reason if it gives one.
   */
  constructor(
    api: NativeApi,
    onMessage: (notification: Notification) => void,
    onChange?: (connected: boolean, reason: string) => void,
  );
  /** Sends the request, or keeps it until there is a connection: the last 64 of them. */
  send(request: Request): void;
  /** Tries at once, without the pause between attempts. */
  reconnect(): void;
  /** Ends the connection, and with it the host, until reconnect() is called. */
  close(): void;
}
