// The words of the statuses, as people say them.
import { Badge } from "../../ui/controls";
import type { PlayerLoot } from "../../api/types";

const redeemable: Record<string, [kind: string, text: string]> = {
  REDEEMABLE: ["good", "Redeemable"],
  REDEEMABLE_RENTAL: ["good", "Redeemable as rental"],
  ALREADY_OWNED: ["quiet", "Already owned"],
  ALREADY_RENTED: ["quiet", "Already rented"],
  CHAMPION_NOT_OWNED: ["warn", "Champion not owned"],
  SKIN_NOT_OWNED: ["warn", "Skin not owned"],
  NOT_REDEEMABLE: ["quiet", "Not redeemable"],
  NOT_REDEEMABLE_RENTAL: ["quiet", "Rental not redeemable"],
  UNKNOWN: ["warn", "Not known yet"],
};

export const redeemableText = (status: string) => redeemable[status]?.[1] ?? status;
// Whether the status is worth a place on a tile: most loot unlocks nothing.
export const isWorthShowing = (status: string) => !status.startsWith("NOT_REDEEMABLE");

export function RedeemableBadge({ item }: { item: PlayerLoot }) {
  const text = redeemableText(item.redeemableStatus);
  return (
    <Badge kind={redeemable[item.redeemableStatus]?.[0] ?? ""} title={text}>
      {text}
    </Badge>
  );
}
