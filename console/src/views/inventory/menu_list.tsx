// The item's context menu, as a front end would show it.
import type { ContextMenu } from "../../api/types";
import { mostWaiting, redeem, waiting } from "../../state/crafts";
import { Badge, Button } from "../../ui/controls";

function needs(entry: ContextMenu): string {
  const parts = [];
  if (entry.essenceQuantity > 0) parts.push(`costs ${entry.essenceQuantity} ${entry.essenceType}`);
  if (entry.requiredTokens !== "" && entry.requiredTokens !== "0") parts.push(`${entry.requiredTokens} tokens missing`);
  if (entry.requiredOthersCount > 0) parts.push(`${entry.requiredOthersCount} more ${entry.requiredOthersName} needed`);
  return parts.join(" · ");
}

interface MenuProps {
  menu: ContextMenu[];
  lootId: string;
  lootName: string;
  onRecipe: (name: string) => void;
}

export function MenuList({ menu, lootId, lootName, onRecipe }: MenuProps) {
  const isFull = waiting.value.length >= mostWaiting;
  if (menu.length === 0) return <p class="quiet">The menu is empty.</p>;
  return (
    <ul class="menu">
      {menu.map((entry) => (
        <li key={entry.name}>
          <div>
            <span class="menu-name">{entry.recipeContextMenuAction || (entry.actionType === "REDEEM" ? "Redeem" : entry.name)}</span> <Badge>{entry.actionType}</Badge>
            {!entry.enabled && <Badge kind="warn">disabled</Badge>}
            <p class="quiet">{[entry.recipeDescription, needs(entry)].filter(Boolean).join(" ")}</p>
          </div>
          {entry.actionType === "REDEEM" ? (
            <Button
              kind="main"
              icon="check"
              label="Redeem"
              disabled={isFull}
              isRunning={waiting.value.some((each) => each.title === `Redeem ${lootName}`)}
              onClick={() => void redeem(`Redeem ${lootName}`, lootId, lootName)}
            >
              Redeem
            </Button>
          ) : (
            <Button kind="plain" icon="chevron" label={`Show the recipe ${entry.name}`} onClick={() => onRecipe(entry.name)} />
          )}
        </li>
      ))}
    </ul>
  );
}
